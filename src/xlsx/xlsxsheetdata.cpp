#include "xlsx/xlsxsheetdata.h"

#include "xlsx/xlsxsharedstrings.h"

#include <algorithm>

namespace quorvale::xlsx {

CellRecord &SheetData::cellAt(int row, int col)
{
    if (m_lastRow == rows.end() || m_lastRow->first != row)
        m_lastRow = rows.try_emplace(row).first;
    std::vector<CellRecord> &cells = m_lastRow->second;
    maxCol = std::max(maxCol, col);
    const auto c = quint16(col);
    if (cells.empty() || cells.back().col < c) {
        cells.push_back(CellRecord{0, 0, c, CellInput::Kind::Empty});
        return cells.back();
    }
    auto it = std::lower_bound(cells.begin(), cells.end(), c,
                               [](const CellRecord &r, quint16 v) { return r.col < v; });
    if (it == cells.end() || it->col != c)
        it = cells.insert(it, CellRecord{0, 0, c, CellInput::Kind::Empty});
    return *it;
}

void SheetData::setCell(int row, int col, const CellInput &input, SharedStrings &strings)
{
    CellRecord &cell = cellAt(row, col);
    cell.kind = input.kind;
    cell.number = input.number;
    cell.string = 0;
    if (input.kind == CellInput::Kind::Text || input.kind == CellInput::Kind::QuotedText)
        cell.string = strings.add(input.text);
}

bool SheetData::hasCell(int row, int col) const
{
    const auto found = rows.find(row);
    if (found == rows.end())
        return false;
    const auto &cells = found->second;
    return std::binary_search(cells.begin(), cells.end(), CellRecord{0, 0, quint16(col), {}},
                              [](const CellRecord &a, const CellRecord &b) { return a.col < b.col; });
}

void SheetData::clearCell(int row, int col)
{
    CellRecord &cell = cellAt(row, col);
    cell.kind = CellInput::Kind::Empty;
}

} // namespace quorvale::xlsx
