#include "xlsx/xlsxsheetlayout.h"

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

bool SheetLayout::isCleared(int row, int col) const
{
    return std::any_of(clears.begin(), clears.end(),
                       [&](const CellRange &r) { return r.contains(row, col); });
}

bool SheetLayout::clearsRow(int row) const
{
    return std::any_of(clears.begin(), clears.end(),
                       [&](const CellRange &r) { return row >= r.row1 && row <= r.row2; });
}

bool SheetLayout::isMergedAway(int row, int col) const
{
    return std::any_of(merges.begin(), merges.end(), [&](const CellRange &r) {
        return r.contains(row, col) && (row != r.row1 || col != r.col1);
    });
}

CellRange SheetLayout::bounds() const
{
    CellRange b{0, 0, 0, 0};
    auto include = [&b](const CellRange &r) {
        b = b.row1 == 0 ? r
                        : CellRange{std::min(b.row1, r.row1), std::min(b.col1, r.col1),
                                    std::max(b.row2, r.row2), std::max(b.col2, r.col2)};
    };
    for (const FormatOp &op : formats)
        if (!op.wholeRows)
            include({op.row1, op.col1, op.row2, op.col2});
    for (const CellRange &r : merges)
        include(r);
    for (const CellRange &r : clears)
        include(r);
    return b;
}

std::vector<std::pair<int, int>> SheetLayout::touchedRows() const
{
    std::vector<std::pair<int, int>> spans;
    for (const FormatOp &op : formats)
        spans.emplace_back(op.row1, op.row2);
    for (const CellRange &r : merges)
        spans.emplace_back(r.row1, r.row2);
    std::sort(spans.begin(), spans.end());
    std::vector<std::pair<int, int>> joined;
    for (const auto &span : spans) {
        if (!joined.empty() && span.first <= joined.back().second + 1)
            joined.back().second = std::max(joined.back().second, span.second);
        else
            joined.push_back(span);
    }
    return joined;
}

void WrittenCells::add(int row, int col1, int col2)
{
    if (!m_runs.empty()) {
        CellRange &last = m_runs.back();
        if (last.row2 + 1 == row && last.col1 == col1 && last.col2 == col2) {
            last.row2 = row;
            return;
        }
    }
    m_runs.push_back({row, col1, row, col2});
}

bool WrittenCells::intersects(const CellRange &range) const
{
    return std::any_of(m_runs.begin(), m_runs.end(),
                       [&](const CellRange &r) { return r.intersects(range); });
}

} // namespace quorvale::xlsx
