#include "output/overviewsheet.h"

#include "xlsx/xlsxchart.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"

namespace quorvale {

namespace {

constexpr int ChartColumns = 8;
constexpr int ChartRows = 16;
constexpr double HeadingFontSize = 14;
constexpr double TableFontSize = 10.5;

xlsx::Chart::Kind chartKind(OverviewCells::Chart::Kind kind)
{
    switch (kind) {
    case OverviewCells::Chart::Kind::Bar:
        return xlsx::Chart::Kind::Bar;
    case OverviewCells::Chart::Kind::Column:
        return xlsx::Chart::Kind::Column;
    case OverviewCells::Chart::Kind::StackedColumn:
        return xlsx::Chart::Kind::StackedColumn;
    }
    return xlsx::Chart::Kind::Column;
}

// The charts stand right of the tables, one under the other.
std::vector<xlsx::Chart> sheetCharts(const OverviewCells &cells)
{
    std::vector<xlsx::Chart> charts;
    const int left = cells.columns + 2;
    int top = int(cells.heading.size()) + 2;
    for (const OverviewCells::Chart &c : cells.charts) {
        xlsx::Chart chart;
        chart.kind = chartKind(c.kind);
        chart.title = c.title;
        chart.area = {top, left, top + ChartRows - 1, left + ChartColumns - 1};
        top += ChartRows + 1;
        for (int column : c.valueColumns) {
            xlsx::ChartSeries s;
            s.name = cells.text(c.headingRow, column);
            s.nameCell = {c.headingRow, column, c.headingRow, column};
            s.categoryCells = {c.firstRow, c.categoryColumn, c.lastRow, c.categoryColumn};
            s.valueCells = {c.firstRow, column, c.lastRow, column};
            for (int r = c.firstRow; r <= c.lastRow; ++r) {
                s.categories << cells.text(r, c.categoryColumn);
                s.values << cells.number(r, column);
            }
            chart.series.push_back(std::move(s));
        }
        charts.push_back(std::move(chart));
    }
    return charts;
}

} // namespace

QString overviewSheetName()
{
    return QStringLiteral("月末概览");
}

void writeOverviewSheet(xlsx::Workbook &book, const OverviewCells &cells, const QString &name)
{
    if (xlsx::Worksheet *old = book.worksheet(name))
        book.removeWorksheet(*old);
    xlsx::Worksheet &sheet = book.addWorksheet(name);
    book.moveToFront(sheet);

    const int columns = std::max(cells.columns, 1);
    sheet.setColumnWidth(1, 14);
    sheet.setColumnWidth(2, 30);
    for (int c = 3; c <= columns; ++c)
        sheet.setColumnWidth(c, 13);
    const int headingRows = int(cells.heading.size());
    for (int r = 1; r <= headingRows; ++r) {
        sheet.merge(r, 1, r, columns);
        sheet.setRowHorizontalAlignment(r, xlsx::Align::HCenter);
    }
    if (headingRows > 0)
        sheet.setRowFontSize(1, HeadingFontSize);
    for (const OverviewCells::Block &b : cells.blocks) {
        sheet.setRangeBorders(b.headingRow, 1, b.lastRow, b.columns);
        sheet.setRangeFontSize(b.headingRow, 1, b.lastRow, b.columns, TableFontSize);
        sheet.setRowHorizontalAlignment(b.headingRow, xlsx::Align::HCenter);
    }
    sheet.setLandscapeOnePageWide();
    sheet.addCharts(sheetCharts(cells));

    for (int r = 1; r <= headingRows; ++r)
        sheet.setCellValue(r, 1, QLatin1Char('\'') + cells.heading[r - 1]);
    for (qsizetype r = headingRows; r < cells.rows.size(); ++r) {
        const QStringList &row = cells.rows[r];
        for (qsizetype c = 0; c < row.size(); ++c)
            if (!row[c].isEmpty())
                sheet.setCellValue(int(r + 1), int(c + 1), row[c]);
    }
    book.finishSheet(sheet);
}

} // namespace quorvale
