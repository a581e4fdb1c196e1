#include "output/overviewcells.h"

namespace quorvale {

namespace {

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

// Builds the cells row by row.
class Layout {
  public:
    explicit Layout(const QStringList &heading)
    {
        m_cells.heading = heading;
        for (qsizetype i = 0; i < heading.size(); ++i)
            add();
        add();
    }
    int add(const QStringList &cells = {})
    {
        m_cells.rows << cells;
        m_cells.columns = std::max(m_cells.columns, int(cells.size()));
        return int(m_cells.rows.size());
    }
    int next() const { return int(m_cells.rows.size()) + 1; }
    // A section caption, its column heading and its rows, then a blank row.
    OverviewCells::Block table(const QString &caption, const QStringList &heading,
                               const QList<QStringList> &rows)
    {
        if (!caption.isEmpty())
            m_cells.captionRows << add({caption});
        const int first = add(heading);
        for (const QStringList &row : rows)
            add(row);
        const OverviewCells::Block block{first, next() - 1, int(heading.size())};
        m_cells.blocks << block;
        add();
        return block;
    }
    void chart(OverviewCells::Chart chart) { m_cells.charts << std::move(chart); }
    OverviewCells result() const { return m_cells; }

  private:
    OverviewCells m_cells;
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

const QString Outstanding = QStringLiteral("欠收金额");

} // namespace

QString OverviewCells::text(int row, int col) const
{
    const QString cell = rows.value(row - 1).value(col - 1);
    return cell.startsWith(QLatin1Char('\'')) ? cell.mid(1) : cell;
}

double OverviewCells::number(int row, int col) const
{
    return rows.value(row - 1).value(col - 1).toDouble();
}

OverviewCells officeOverviewCells(const OfficeOverview &o)
{
    Layout layout(o.headingLines);
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
        const OverviewCells::Block fees =
            layout.table(QStringLiteral("一、欠收 按收费项目"),
                         {QStringLiteral("类别"), QStringLiteral("收费项目"),
                          QStringLiteral("房间/车位数"), QStringLiteral("笔数"),
                          QStringLiteral("应收金额"), QStringLiteral("减免金额"), Outstanding},
                         rows);
        if (details > 0)
            layout.chart({OverviewCells::Chart::Kind::Bar,
                          QStringLiteral("欠收金额 按收费项目"),
                          fees.headingRow,
                          fees.headingRow + 1,
                          fees.headingRow + details,
                          2,
                          {7}});

        QList<QStringList> ages;
        for (const AgeLine &age : o.ages)
            ages << QStringList{label(age.label), number(age.entries), age.amount.toText()};
        const OverviewCells::Block aged =
            layout.table(QStringLiteral("二、欠收 按账龄"),
                         {QStringLiteral("账龄"), QStringLiteral("笔数"), Outstanding}, ages);
        layout.chart({OverviewCells::Chart::Kind::Column,
                      QStringLiteral("欠收金额 按账龄"),
                      aged.headingRow,
                      aged.headingRow + 1,
                      aged.lastRow,
                      1,
                      {3}});

        QList<QStringList> largest;
        for (qsizetype i = 0; i < o.largest.size(); ++i) {
            const LargestPlace &p = o.largest[i];
            largest << QStringList{number(int(i + 1)), label(p.place), label(p.firstMonth),
                                   number(p.entries), p.amount.toText()};
        }
        layout.table(QStringLiteral("三、欠收最多的十个房间或车位"),
                     {QStringLiteral("序号"), QStringLiteral("房号"),
                      QStringLiteral("最早欠收月份"), QStringLiteral("笔数"), Outstanding},
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
    return layout.result();
}

OverviewCells companyOverviewCells(const QList<OfficeOverview> &offices, const QStringList &heading)
{
    Layout layout(heading);
    QStringList columns{QStringLiteral("管理处")};
    for (const AgeLine &age : offices.value(0).ages)
        columns << age.label;
    columns << Outstanding << QStringLiteral("其中12个月以上") << QStringLiteral("预收金额");

    QList<QStringList> rows;
    QList<Amount> totals(columns.size());
    for (const OfficeOverview &o : offices) {
        QList<Amount> amounts;
        for (const AgeLine &age : o.ages)
            amounts << age.amount;
        amounts << o.totalArrears.outstanding() << o.ages.last().amount << o.totalAdvance.amount;
        QStringList row{label(o.officeCode + u' ' + o.officeName)};
        for (qsizetype i = 0; i < amounts.size(); ++i) {
            row << amounts[i].toText();
            totals[i + 1] += amounts[i];
        }
        rows << row;
    }
    QStringList total{label(QStringLiteral("合计"))};
    for (qsizetype i = 1; i < totals.size(); ++i)
        total << totals[i].toText();
    rows << total;
    const OverviewCells::Block block = layout.table({}, columns, rows);
    QList<int> ages;
    for (int c = 2; c < 2 + int(offices.value(0).ages.size()); ++c)
        ages << c;
    if (!offices.isEmpty())
        layout.chart({OverviewCells::Chart::Kind::StackedColumn,
                      QStringLiteral("欠收金额 按管理处和账龄"), block.headingRow,
                      block.headingRow + 1, block.headingRow + int(offices.size()), 1, ages});
    return layout.result();
}

} // namespace quorvale
