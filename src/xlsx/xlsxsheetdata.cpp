#include "xlsx/xlsxsheetdata.h"

#include "xlsx/xlsxsharedstrings.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>

namespace quorvale::xlsx {

std::optional<CellRange> CellRange::parse(QByteArrayView ref)
{
    const qsizetype colon = ref.indexOf(':');
    CellRange r{};
    if (!XmlText::parseCellRef(colon < 0 ? ref : ref.first(colon), r.row1, r.col1))
        return std::nullopt;
    r.row2 = r.row1;
    r.col2 = r.col1;
    if (colon >= 0 && !XmlText::parseCellRef(ref.sliced(colon + 1), r.row2, r.col2))
        return std::nullopt;
    return CellRange{std::min(r.row1, r.row2), std::min(r.col1, r.col2), std::max(r.row1, r.row2),
                     std::max(r.col1, r.col2)};
}

QByteArray CellRange::ref() const
{
    const QByteArray first = XmlText::cellRef(row1, col1);
    return row1 == row2 && col1 == col2 ? first : first + ':' + XmlText::cellRef(row2, col2);
}

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

const CellRecord *SheetData::find(int row, int col) const
{
    const auto found = rows.find(row);
    if (found == rows.end())
        return nullptr;
    const auto &cells = found->second;
    const auto it = std::lower_bound(cells.begin(), cells.end(), quint16(col),
                                     [](const CellRecord &r, quint16 v) { return r.col < v; });
    return it != cells.end() && it->col == col ? &*it : nullptr;
}

CellRange SheetData::bounds() const
{
    CellRange b{0, 0, 0, 0};
    auto include = [&b](const CellRange &r) {
        if (b.row1 == 0) {
            b = r;
            return;
        }
        b = {std::min(b.row1, r.row1), std::min(b.col1, r.col1), std::max(b.row2, r.row2),
             std::max(b.col2, r.col2)};
    };
    for (const auto &[row, cells] : rows)
        if (!cells.empty())
            include({row, cells.front().col, row, cells.back().col});
    for (const CellRange &r : clears)
        include(r);
    return b;
}

void SheetData::clearCell(int row, int col)
{
    CellRecord &cell = cellAt(row, col);
    cell.kind = CellInput::Kind::Empty;
}

} // namespace quorvale::xlsx
