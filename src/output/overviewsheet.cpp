#include "output/overviewsheet.h"

#include "xlsx/xlsxchart.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"

#include <QList>
#include <QStringList>

namespace quorvale {

namespace {

constexpr int TableColumns = 7; // A to G
constexpr int ChartColumn = 9;  // I
constexpr int ChartColumns = 8; // I to P
constexpr int ChartRows = 16;
constexpr double HeadingFontSize = 14;
constexpr double TableFontSize = 10.5;

// A text cell as typed with a leading apostrophe, so that "202401" or
// "1-3个月" stay what they say.
QString label(const QString &text)
{
    return text.isEmpty() ? text : QLatin1Char('\'') + text;
}

QString number(int n)
{
    return QString::number(n);
}

// The sheet as rows of cell inputs, with what is formatted and charted,
// made before anything is written (a sheet takes its layout first).
class OverviewLayout {
  public:
    int add(const QStringList &cells = {})
    {
        m_rows << cells;
        return int(m_rows.size());
    }
    int next() const { return int(m_rows.size()) + 1; }
    struct Block {
        int firstRow, lastRow, columns;
    };
    // A section caption, its column heading and its rows; the block is
    // bordered, from the heading down.
    Block table(const QString &caption, const QStringList &heading, const QList<QStringList> &rows)
    {
        m_captions << add({caption});
        const int first = add(heading);
        for (const QStringList &row : rows)
            add(row);
        const Block block{first, next() - 1, int(heading.size())};
        m_blocks << block;
        add();
        return block;
    }

    QList<QStringList> m_rows;
    QList<int> m_captions;
    QList<Block> m_blocks;
};

// A fee item's line under its kind, or a sum with its caption in column A.
QStringList arrearsRow(const QString &kind, const QString &feeItem, const ArrearsLine &line)
{
    return {label(kind),
            label(feeItem),
            number(line.places),
            number(line.entries),
            line.receivable.toText(),
            line.reductions.toText(),
            line.outstanding().toText()};
}

QStringList advanceRow(const QString &kind, const QString &feeItem, const AdvanceLine &line)
{
    return {label(kind),          label(feeItem),         number(line.entries),
            line.amount.toText(), label(line.firstMonth), label(line.lastMonth)};
}

// A series of the written cells: its name above the values, categories
// and values down two columns of the rows.
xlsx::ChartSeries series(const QString &name, const OverviewLayout &layout, int nameRow,
                         int firstRow, int lastRow, int categoryCol, int valueCol)
{
    const int nameCol = valueCol;
    xlsx::ChartSeries s;
    s.name = name;
    s.nameCell = {nameRow, nameCol, nameRow, nameCol};
    s.categoryCells = {firstRow, categoryCol, lastRow, categoryCol};
    s.valueCells = {firstRow, valueCol, lastRow, valueCol};
    for (int r = firstRow; r <= lastRow; ++r) {
        const QStringList &row = layout.m_rows.at(r - 1);
        s.categories << row.value(categoryCol - 1).mid(1); // without the apostrophe
        s.values << row.value(valueCol - 1).toDouble();
    }
    return s;
}

} // namespace

QString overviewSheetName()
{
    return QStringLiteral("月末概览");
}

void writeOverviewSheet(xlsx::Workbook &book, const OfficeOverview &o, const QString &name)
{
    OverviewLayout layout;
    for (const QString &line : o.headingLines)
        layout.add({label(line)});
    const int headingRows = int(o.headingLines.size());
    layout.add();

    std::vector<xlsx::Chart> charts;
    int chartRow = layout.next();
    const auto placeChart = [&](xlsx::Chart chart) {
        chart.area = {chartRow, ChartColumn, chartRow + ChartRows - 1,
                      ChartColumn + ChartColumns - 1};
        chartRow += ChartRows + 1;
        charts.push_back(std::move(chart));
    };

    if (o.hasArrears) {
        QList<QStringList> rows;
        for (const ArrearsLine &line : o.propertyArrears.lines)
            rows << arrearsRow(QStringLiteral("房产"), line.feeItem, line);
        for (const ArrearsLine &line : o.parkingArrears.lines)
            rows << arrearsRow(QStringLiteral("车位"), line.feeItem, line);
        const int details = int(rows.size());
        for (const ArrearsLine *sum :
             {&o.propertyArrears.subtotal, &o.parkingArrears.subtotal, &o.totalArrears})
            rows << arrearsRow(sum->feeItem, {}, *sum);
        const OverviewLayout::Block fees = layout.table(
            QStringLiteral("一、欠收 按收费项目"),
            {QStringLiteral("类别"), QStringLiteral("收费项目"), QStringLiteral("房间/车位数"),
             QStringLiteral("笔数"), QStringLiteral("应收金额"), QStringLiteral("减免金额"),
             QStringLiteral("欠收金额")},
            rows);
        if (details > 0) {
            xlsx::Chart chart;
            chart.kind = xlsx::Chart::Kind::Bar;
            chart.title = QStringLiteral("欠收金额 按收费项目");
            chart.series.push_back(series(QStringLiteral("欠收金额"), layout, fees.firstRow,
                                          fees.firstRow + 1, fees.firstRow + details, 2, 7));
            placeChart(std::move(chart));
        }

        QList<QStringList> ages;
        for (const AgeLine &age : o.ages)
            ages << QStringList{label(age.label), number(age.entries), age.amount.toText()};
        const OverviewLayout::Block aged = layout.table(
            QStringLiteral("二、欠收 按账龄"),
            {QStringLiteral("账龄"), QStringLiteral("笔数"), QStringLiteral("欠收金额")}, ages);
        xlsx::Chart chart;
        chart.kind = xlsx::Chart::Kind::Column;
        chart.title = QStringLiteral("欠收金额 按账龄");
        chart.series.push_back(series(QStringLiteral("欠收金额"), layout, aged.firstRow,
                                      aged.firstRow + 1, aged.lastRow, 1, 3));
        placeChart(std::move(chart));

        QList<QStringList> largest;
        for (qsizetype i = 0; i < o.largest.size(); ++i) {
            const LargestPlace &p = o.largest[i];
            largest << QStringList{number(int(i + 1)), label(p.place), label(p.firstMonth),
                                   number(p.entries), p.amount.toText()};
        }
        layout.table(QStringLiteral("三、欠收最多的十个房间或车位"),
                     {QStringLiteral("序号"), QStringLiteral("房号"),
                      QStringLiteral("最早欠收月份"), QStringLiteral("笔数"),
                      QStringLiteral("欠收金额")},
                     largest);
    }

    if (o.hasAdvance) {
        QList<QStringList> rows;
        for (const AdvanceLine &line : o.propertyAdvance.lines)
            rows << advanceRow(QStringLiteral("房产"), line.feeItem, line);
        for (const AdvanceLine &line : o.parkingAdvance.lines)
            rows << advanceRow(QStringLiteral("车位"), line.feeItem, line);
        for (const AdvanceLine *sum :
             {&o.propertyAdvance.subtotal, &o.parkingAdvance.subtotal, &o.totalAdvance})
            rows << advanceRow(sum->feeItem, {}, *sum);
        layout.table(QStringLiteral("四、预收 按收费项目"),
                     {QStringLiteral("类别"), QStringLiteral("收费项目"), QStringLiteral("笔数"),
                      QStringLiteral("预收金额"), QStringLiteral("起始月份"),
                      QStringLiteral("截止月份")},
                     rows);
    }

    if (xlsx::Worksheet *old = book.worksheet(name))
        book.removeWorksheet(*old);
    xlsx::Worksheet &sheet = book.addWorksheet(name);
    book.moveToFront(sheet);

    sheet.setColumnWidth(1, 12);
    sheet.setColumnWidth(2, 30);
    for (int c = 3; c <= TableColumns; ++c)
        sheet.setColumnWidth(c, 13);
    for (int r = 1; r <= headingRows; ++r) {
        sheet.merge(r, 1, r, TableColumns);
        sheet.setRowHorizontalAlignment(r, xlsx::Align::HCenter);
    }
    if (headingRows > 0)
        sheet.setRowFontSize(1, HeadingFontSize);
    for (const OverviewLayout::Block &b : layout.m_blocks) {
        sheet.setRangeBorders(b.firstRow, 1, b.lastRow, b.columns);
        sheet.setRangeFontSize(b.firstRow, 1, b.lastRow, b.columns, TableFontSize);
        sheet.setRowHorizontalAlignment(b.firstRow, xlsx::Align::HCenter);
    }
    sheet.setLandscapeOnePageWide();
    sheet.addCharts(charts);
    for (qsizetype r = 0; r < layout.m_rows.size(); ++r) {
        const QStringList &row = layout.m_rows[r];
        for (qsizetype c = 0; c < row.size(); ++c)
            if (!row[c].isEmpty())
                sheet.setCellValue(int(r + 1), int(c + 1), row[c]);
    }
    book.finishSheet(sheet);
}

} // namespace quorvale
