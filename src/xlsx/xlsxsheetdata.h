#pragma once

#include "xlsx/xlsxcellinput.h"

#include <QByteArray>
#include <map>
#include <optional>
#include <vector>

namespace quorvale::xlsx {

class SharedStrings;

// One written cell. Kind Empty marks a cleared cell, which removes a value
// the sheet already had.
struct CellRecord {
    double number;
    quint32 string;
    quint16 col;
    CellInput::Kind kind;
};

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

// Everything written to one worksheet since it was opened.
class SheetData {
public:
    void setCell(int row, int col, const CellInput &input, SharedStrings &strings);
    void clearCell(int row, int col);
    bool hasCell(int row, int col) const { return find(row, col) != nullptr; }
    const CellRecord *find(int row, int col) const;
    // The smallest range holding every written and every cleared cell;
    // row1 == 0 when there is none.
    CellRange bounds() const;
    bool isEmpty() const
    {
        return rows.empty() && formats.empty() && widths.empty() && merges.empty() &&
               clears.empty();
    }
    // Whether an existing cell is wiped (value, format and merges) before
    // the written cells go in.
    bool isCleared(int row, int col) const
    {
        for (const CellRange &r : clears)
            if (row >= r.row1 && row <= r.row2 && col >= r.col1 && col <= r.col2)
                return true;
        return false;
    }
    bool clearsRow(int row) const
    {
        for (const CellRange &r : clears)
            if (row >= r.row1 && row <= r.row2)
                return true;
        return false;
    }

    std::map<int, std::vector<CellRecord>> rows;
    std::vector<FormatOp> formats;
    std::map<int, double> widths;
    std::vector<CellRange> merges;
    std::vector<CellRange> clears;
    int maxCol = 0;

private:
    CellRecord &cellAt(int row, int col);
    std::map<int, std::vector<CellRecord>>::iterator m_lastRow = rows.end();
};

} // namespace quorvale::xlsx
