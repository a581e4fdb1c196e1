#include "reports/financecolumnfit.h"

#include "ui/flexgrid.h"

#include <cmath>
#include <memory>

namespace quorvale {

namespace {

constexpr int kCurrentRowTestMargin = 80;
constexpr int kCurrentRowSetMargin = 100;
constexpr int kNewRowMargin = 90;

} // namespace

WidthRule financeColumnFit(ColumnFit fit, const FlexGrid &grid, const QFont &font)
{
    if (fit == ColumnFit::NewRow)
        return widenToRowTexts(grid, font, kNewRowMargin, kNewRowMargin);

    auto measuredRow = std::make_shared<int>(-1);
    return [&grid, font, measuredRow](const QStringList &, int, QVector<int> &widths) {
        const int row = grid.Row();
        if (row == *measuredRow)
            return;
        *measuredRow = row;
        const int cols = qMin(grid.Cols(), int(widths.size()));
        for (int c = 0; c < cols; ++c) {
            const double w = grid.TextWidth(grid.TextMatrix(row, c), font);
            if (w + kCurrentRowTestMargin > widths[c])
                widths[c] = int(std::lround(w + kCurrentRowSetMargin));
        }
    };
}

} // namespace quorvale
