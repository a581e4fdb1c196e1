#include "output/overviewprint.h"

#include "output/gridprint.h"
#include "runtime/textwidth.h"
#include "table/reporttable.h"

#include <QColor>
#include <cmath>

namespace quorvale {

namespace {

constexpr int CellPadding = 240; // twips beside the widest text of a column
constexpr double ChartTitleSize = 12;
constexpr double LabelSize = 9;
const QColor SeriesColours[] = {QColor(0x44, 0x72, 0xC4), QColor(0xED, 0x7D, 0x31),
                                QColor(0xA5, 0xA5, 0xA5), QColor(0xFF, 0xC0, 0x00),
                                QColor(0x5B, 0x9B, 0xD5), QColor(0x70, 0xAD, 0x47)};

// The tables below the heading as one grid: the first table's heading is
// the grid's, every later line a row of it.
ReportTable overviewTable(const OverviewCells &cells, const TextWidthFn &textWidth)
{
    ReportTable table;
    table.setCols(std::max(cells.columns, 1));
    const int first =
        cells.blocks.isEmpty() ? int(cells.heading.size()) + 1 : cells.blocks.first().headingRow;
    table.setRows(int(cells.rows.size()) - first + 1);
    table.setFixedRows(1);
    for (int r = first; r <= cells.rows.size(); ++r)
        for (int c = 1; c <= table.cols(); ++c)
            table.setText(r - first, c - 1, cells.text(r, c));
    AutoFitColumns(table, textWidth);
    for (int c = 0; c < table.cols(); ++c)
        table.setColWidth(c, table.colWidth(c) + CellPadding);
    return table;
}

// 1, 2 or 5 times a power of ten, at least the value.
double niceCeiling(double value)
{
    if (value <= 0)
        return 1;
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (double step : {1.0, 2.0, 5.0, 10.0})
        if (step * power >= value)
            return step * power;
    return 10 * power;
}

QString axisText(double value)
{
    return QString::number(value, 'f', 0);
}

void printAt(Printer &printer, double x, double y, const QString &text)
{
    printer.setCurrentX(x);
    printer.setCurrentY(y);
    printer.Print(text);
}

// One chart in the box: title, value axis with five steps, a bar per
// category (stacked for several series), the categories' labels, a legend
// for several series.
void drawChart(Printer &printer, const OverviewCells &cells, const OverviewCells::Chart &chart,
               double left, double top, double width, double height)
{
    printer.setFontBold(true);
    printer.setFontSize(ChartTitleSize);
    printAt(printer, left + (width - printer.TextWidth(chart.title)) / 2, top, chart.title);
    printer.setFontBold(false);
    printer.setFontSize(LabelSize);
    const double lineHeight = printer.TextHeight(QStringLiteral("中"));

    QStringList categories;
    QList<QList<double>> values; // per category, per series
    double largest = 0;
    for (int r = chart.firstRow; r <= chart.lastRow; ++r) {
        categories << cells.text(r, chart.categoryColumn);
        QList<double> stack;
        double sum = 0;
        for (int column : chart.valueColumns) {
            stack << std::max(0.0, cells.number(r, column));
            sum += stack.last();
        }
        values << stack;
        largest = std::max(largest, sum);
    }
    const double axisMax = niceCeiling(largest);
    const bool horizontal = chart.kind == OverviewCells::Chart::Kind::Bar;
    double labelWidth = printer.TextWidth(axisText(axisMax));
    for (const QString &c : categories)
        labelWidth = std::max(labelWidth, horizontal ? printer.TextWidth(c) : 0.0);
    const bool legend = chart.valueColumns.size() > 1;

    const double plotLeft = left + labelWidth + lineHeight;
    const double plotTop = top + 2 * lineHeight;
    const double plotRight = left + width - lineHeight;
    const double plotBottom = top + height - (legend ? 3 : 2) * lineHeight;
    const int n = int(categories.size());
    if (n == 0 || plotRight <= plotLeft || plotBottom <= plotTop)
        return;

    // The value axis and its steps.
    for (int step = 0; step <= 5; ++step) {
        const double value = axisMax * step / 5;
        const QString text = axisText(value);
        if (horizontal) {
            const double x = plotLeft + (plotRight - plotLeft) * step / 5;
            printer.Line(x, plotBottom, x, plotBottom + lineHeight / 4);
            printAt(printer, x - printer.TextWidth(text) / 2, plotBottom + lineHeight / 4, text);
        } else {
            const double y = plotBottom - (plotBottom - plotTop) * step / 5;
            printer.Line(plotLeft - lineHeight / 4, y, plotLeft, y);
            printAt(printer, plotLeft - lineHeight / 2 - printer.TextWidth(text),
                    y - lineHeight / 2, text);
        }
    }
    printer.Line(plotLeft, plotTop, plotLeft, plotBottom);
    printer.Line(plotLeft, plotBottom, plotRight, plotBottom);

    const double band = (horizontal ? plotBottom - plotTop : plotRight - plotLeft) / n;
    for (int i = 0; i < n; ++i) {
        double base = 0;
        const double from = (horizontal ? plotTop : plotLeft) + band * i + band * 0.2;
        const double to = from + band * 0.6;
        for (qsizetype s = 0; s < values[i].size(); ++s) {
            const double value = values[i][s];
            const QColor colour = SeriesColours[s % std::size(SeriesColours)];
            if (horizontal) {
                const double scale = (plotRight - plotLeft) / axisMax;
                printer.Box(plotLeft + base * scale, from, plotLeft + (base + value) * scale, to,
                            colour);
            } else {
                const double scale = (plotBottom - plotTop) / axisMax;
                printer.Box(from, plotBottom - (base + value) * scale, to,
                            plotBottom - base * scale, colour);
            }
            base += value;
        }
        const QString &name = categories[i];
        if (horizontal)
            printAt(printer, plotLeft - lineHeight / 2 - printer.TextWidth(name),
                    (from + to) / 2 - lineHeight / 2, name);
        else
            printAt(printer, (from + to - printer.TextWidth(name)) / 2, plotBottom + lineHeight / 4,
                    name);
    }

    if (legend) {
        double x = plotLeft;
        const double y = top + height - lineHeight * 1.2;
        for (qsizetype s = 0; s < chart.valueColumns.size(); ++s) {
            const QString name = cells.text(chart.headingRow, chart.valueColumns[s]);
            printer.Box(x, y + lineHeight * 0.2, x + lineHeight * 0.6, y + lineHeight * 0.8,
                        SeriesColours[s % std::size(SeriesColours)]);
            printAt(printer, x + lineHeight, y, name);
            x += lineHeight * 2 + printer.TextWidth(name);
        }
    }
}

} // namespace

void printOverview(Printer &printer, const OverviewCells &cells, const PrintLook &look,
                   const QDate &printedOn)
{
    PrintTitles titles;
    titles.printedOn = printedOn;
    // The company line is every page's own; the rest head the overview.
    titles.title = cells.heading.value(1);
    titles.secondLine = cells.heading.mid(2).join(QStringLiteral("  "));
    const ReportTable table = overviewTable(cells, textWidthsIn(look.font, screenDpi()));

    ExtraPages charts;
    charts.count = cells.charts.isEmpty() ? 0 : 1;
    charts.draw = [&cells](Printer &p, int, double top, double bottom) {
        const double gap = p.TextHeight(QStringLiteral("中"));
        const double height = (bottom - top - gap * cells.charts.size()) / cells.charts.size();
        double y = top + gap;
        for (const OverviewCells::Chart &chart : cells.charts) {
            drawChart(p, cells, chart, 0, y, p.ScaleWidth(), height);
            y += height + gap;
        }
    };
    PrintGrid(printer, table, look, titles, false, 0, {}, charts);
}

} // namespace quorvale
