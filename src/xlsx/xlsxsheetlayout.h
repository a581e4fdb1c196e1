#pragma once

#include "xlsx/xlsxcellinput.h"

#include <QByteArray>
#include <QString>
#include <map>
#include <optional>
#include <vector>

namespace quorvale::xlsx {

// One cell of the row being written. Kind Empty marks a cleared cell, which
// removes a value the sheet already had.
struct RowCell {
    quint16 col;
    CellInput::Kind kind;
    double number;
    QString text; // Text and QuotedText
};
// A row's cells in ascending columns.
using RowCells = std::vector<RowCell>;

enum class FormatProperty : unsigned char { FontSize, Horizontal, Vertical, Border };

// A formatting call in the order it was made; later calls win where they
// overlap, as they would in Excel.
struct FormatOp {
    int row1, col1, row2, col2;
    bool wholeRows;
    FormatProperty property;
    double value;
};

struct CellRange {
    int row1, col1, row2, col2;
    bool intersects(const CellRange &o) const
    {
        return row1 <= o.row2 && o.row1 <= row2 && col1 <= o.col2 && o.col1 <= col2;
    }
    bool contains(int row, int col) const
    {
        return row >= row1 && row <= row2 && col >= col1 && col <= col2;
    }
    // "B2:D5" or "B2"; nullopt for anything else.
    static std::optional<CellRange> parse(QByteArrayView ref);
    QByteArray ref() const;
};

// What a worksheet's calls set up before its cells are written: formats,
// column widths, merges and the ranges wiped first. Rows are written out as
// they are completed, so all of this is known before the first one.
struct SheetLayout {
    std::vector<FormatOp> formats;
    std::map<int, double> widths;
    std::vector<CellRange> merges;
    std::vector<CellRange> clears;
    QByteArray drawingRelId;           // a new sheet's charts, written after its page margins
    bool landscapeOnePageWide = false; // a new sheet's print: turned, all columns on one page

    bool isEmpty() const
    {
        return formats.empty() && widths.empty() && merges.empty() && clears.empty();
    }
    // Whether an existing cell is wiped (value, format and merges) before
    // the written cells go in.
    bool isCleared(int row, int col) const;
    bool clearsRow(int row) const;
    // A cell under a new merge, other than its first: its value goes.
    bool isMergedAway(int row, int col) const;
    // Every range the calls cover (cleared, formatted, merged); row1 == 0
    // when there is none.
    CellRange bounds() const;
    // The rows that formats and merges touch, as sorted, disjoint ranges.
    std::vector<std::pair<int, int>> touchedRows() const;
};

// Where written cells lie, as runs of rows with the same column span: a
// block of report rows is one run however many rows it has.
class WrittenCells {
public:
    void add(int row, int col1, int col2);
    bool intersects(const CellRange &range) const;

private:
    std::vector<CellRange> m_runs;
};

} // namespace quorvale::xlsx
