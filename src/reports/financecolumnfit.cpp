#include "reports/financecolumnfit.h"

#include <cmath>
#include <memory>

namespace quorvale {

namespace {

constexpr int kCurrentRowTestMargin = 80;
constexpr int kCurrentRowSetMargin = 100;
constexpr int kNewRowMargin = 90;

} // namespace

WidthRule financeColumnFit(ColumnFit fit, const TableFill &fill)
{
    const TextWidthFn &textWidth = fill.textWidth();
    if (fit == ColumnFit::NewRow)
        return widenToRowTexts(textWidth, kNewRowMargin, kNewRowMargin);

    auto measuredRow = std::make_shared<int>(-1);
    return [&fill, textWidth, measuredRow](const QStringList &, int, QVector<int> &widths) {
        const ReportTable &table = fill.table();
        const int row = fill.cursor().currentRow;
        if (row == *measuredRow)
            return;
        *measuredRow = row;
        const int cols = qMin(table.cols(), int(widths.size()));
        for (int c = 0; c < cols; ++c) {
            const double w = textWidth(table.text(row, c));
            if (w + kCurrentRowTestMargin > widths[c])
                widths[c] = int(std::lround(w + kCurrentRowSetMargin));
        }
    };
}

} // namespace quorvale
