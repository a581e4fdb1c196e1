#pragma once

#include "xlsx/xlsxsheetlayout.h"
#include "xlsx/xlsxstylesheet.h"

#include <QByteArray>
#include <QByteArrayView>
#include <vector>

namespace quorvale::xlsx {

class ByteSink;
class ReplacedFormulas;

// Writes one <row> of a worksheet: the original row's cells merged with the
// written ones in column order, the formats of the layout applied, and the
// cells the layout wipes dropped. Texts are written inline, so nothing about
// a row outlives it. A cell that follows the one before it carries no
// reference: Excel and every reader place it by its order, and references
// are most of what a sheet's XML costs to compress.
class RowWriter {
public:
    struct ColumnStyle {
        int min, max;
        quint32 xf;
    };

    RowWriter(const SheetLayout &layout, StyleSheet &styles, QByteArray prefix,
              ReplacedFormulas &formulas, WrittenCells &written);

    // Styles of the sheet's <col> entries, for cells that are created.
    void setColumnStyles(std::vector<ColumnStyle> styles) { m_columnStyles = std::move(styles); }
    // On a protected sheet every cell written or wiped keeps the lock its
    // position had, so the owner's unlocked cells stay open to the next export.
    void setKeepsLocks(bool keep) { m_keepsLocks = keep; }
    // original: the row's element as the sheet had it, or empty.
    void write(ByteSink &out, int row, const RowCells &ours, QByteArrayView original);

private:
    quint32 resolve(const StyleRequest &request);
    quint32 columnStyle(int col) const;
    StyleRequest requestFor(int col, quint32 baseXf) const;
    // lockOf: the format whose lock the cell keeps, or -1.
    void writeOwn(ByteSink &out, int col, const RowCell *ours, quint32 baseXf, qint64 lockOf);
    void writeOriginal(ByteSink &out, int col, QByteArrayView cell);
    void openCell(ByteSink &out, int col, quint32 xf);

    const SheetLayout &m_layout;
    StyleSheet &m_styles;
    QByteArray m_prefix;
    ReplacedFormulas &m_formulas;
    WrittenCells &m_written;
    std::vector<ColumnStyle> m_columnStyles;
    std::vector<const FormatOp *> m_rowOps;
    std::vector<std::pair<int, int>> m_cover; // column spans the row's range formats cover
    QByteArray m_rowDigits;
    int m_lastWritten = 0; // column of the cell last written in the row
    StyleRequest m_lastRequest;
    quint32 m_lastXf = 0;
    bool m_resolvedOnce = false;
    bool m_keepsLocks = false;
};

} // namespace quorvale::xlsx
