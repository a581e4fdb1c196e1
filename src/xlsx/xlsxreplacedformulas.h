#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <vector>

namespace quorvale::xlsx {

struct CellRange;

// The formulas of cells whose content the export replaces. A shared
// formula's text lives in its first cell only: when that cell is replaced,
// the cells that still use it get the formula spelt out, moved to where they
// are. An array formula cannot lose part of its cells: that is refused.
class ReplacedFormulas {
  public:
    // prefix: the worksheet's element prefix ("x:" or empty); cleared: the
    // ranges the export wipes, which may take whole arrays with them.
    ReplacedFormulas(const QByteArray &prefix, const std::vector<CellRange> &cleared,
                     QString sheetName);

    // Whether the cell's XML has a formula.
    bool hasFormula(QByteArrayView cell) const { return formulaAt(cell) >= 0; }
    // Notes the formula of a cell being replaced; throws for a cut array.
    void replaced(int row, int col, QByteArrayView cell);
    // The cell with its shared formula spelt out when the formula's first
    // cell was replaced; empty when the cell needs no change.
    QByteArray spelledOut(int row, int col, QByteArrayView cell) const;
    bool anyReplaced() const { return m_anyReplaced; }
    bool anySharedLost() const { return !m_lostMasters.isEmpty(); }

  private:
    qsizetype formulaAt(QByteArrayView cell) const;

    struct SharedFormula {
        int row, col;
        QString text;
    };
    QByteArray m_open, m_close; // "<x:f", "</x:f>"
    const std::vector<CellRange> &m_cleared;
    QString m_sheetName;
    QHash<QByteArray, SharedFormula> m_lostMasters; // by si
    bool m_anyReplaced = false;
};

} // namespace quorvale::xlsx
