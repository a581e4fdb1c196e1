#include "reports/overviewbuilder.h"
#include "table/reporttable.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

// A finance report's table as its fill leaves it: place, fee item, amount
// and the billing month's first day where every finance report puts them.
ReportTable financeTable(const QList<QStringList> &rows) // place, fee, amount, month
{
    ReportTable table;
    table.setCols(20);
    table.setRows(1);
    table.setFixedRows(1);
    for (const QStringList &r : rows) {
        const int row = table.rows();
        table.setRows(row + 1);
        table.setText(row, 0, r[0]);
        table.setText(row, 3, r[1]);
        table.setText(row, 4, r[1]);
        table.setText(row, 5, r[2]);
        table.setText(row, 6, r[3]);
    }
    return table;
}

TEST(Amount, CellTextsAddUpExactly)
{
    const std::pair<const char *, const char *> cases[] = {
        {"1234", "1234"},      {"0.1", "0.1"}, {"-5.50", "-5.5"}, {"0.0001", "0.0001"},
        {"2.00005", "2.0001"}, {"", "0"},      {"abc", "0"},      {"1.2.3", "0"},
        {" 7 ", "7"},          {".5", "0.5"},
    };
    for (const auto &[text, shown] : cases)
        EXPECT_EQ(Amount::parse(text).toText().toStdString(), shown) << text;

    Amount sum;
    for (int i = 0; i < 100000; ++i)
        sum += Amount::parse("0.1");
    EXPECT_EQ(sum.toText(), "10000");
}

TEST(OverviewBuilder, ArrearsByFeeItemAgeAndPlace)
{
    OverviewBuilder builder("01", "一处", "202403");
    builder.add(FinanceReportKind::PropertyArrears,
                financeTable({{"一处->2栋->101", "物业费", "100", "2024-03-01"},
                              {"一处->2栋->101", "物业费", "100", "2024-02-01"},
                              {"一处->2栋->101", "电梯费", "30.5", "2023-12-01"},
                              {"一处->2栋->102", "物业费", "0", "2022-11-01"},
                              {"一处->10栋->1001", "物业费", "250", "2023-03-01"}}));
    builder.add(FinanceReportKind::ParkingArrears,
                financeTable({{"一处->地下车库->A-01", "停车费", "80", "2023-09-01"},
                              {"一处->地下车库->A-01", "停车费", "80", "2023-09-01"}}));
    const OfficeOverview o = builder.result({"heading"});

    ASSERT_TRUE(o.hasArrears);
    EXPECT_FALSE(o.hasAdvance);
    const auto line = [](const ArrearsLine &l) {
        return QStringLiteral("%1 %2 %3 %4")
            .arg(l.feeItem)
            .arg(l.places)
            .arg(l.entries)
            .arg(l.outstanding().toText());
    };
    QStringList fees;
    for (const ArrearsLine &l : o.propertyArrears.lines + o.parkingArrears.lines)
        fees << line(l);
    EXPECT_EQ(fees, QStringList({"物业费 3 4 450", "电梯费 1 1 30.5", "停车费 1 2 160"}));
    EXPECT_EQ(line(o.propertyArrears.subtotal), "房产小计 3 5 480.5");
    EXPECT_EQ(line(o.totalArrears), "合计 4 7 640.5");

    // Months overdue: 0; 1 and 3; 6 twice; 12; 16.
    QStringList ages;
    for (const AgeLine &a : o.ages)
        ages << QStringLiteral("%1 %2 %3").arg(a.label).arg(a.entries).arg(a.amount.toText());
    EXPECT_EQ(ages, QStringList({"当月 1 100", "1-3个月 2 130.5", "4-6个月 2 160", "7-12个月 1 250",
                                 "12个月以上 1 0"}));

    QStringList largest;
    for (const LargestPlace &p : o.largest)
        largest << QStringLiteral("%1 %2 %3 %4")
                       .arg(p.place, p.firstMonth)
                       .arg(p.entries)
                       .arg(p.amount.toText());
    EXPECT_EQ(largest,
              QStringList({"一处->10栋->1001 202303 1 250", "一处->2栋->101 202312 3 230.5",
                           "一处->地下车库->A-01 202309 2 160", "一处->2栋->102 202211 1 0"}));
}

TEST(OverviewBuilder, TenLargestInReportOrderOnTies)
{
    QList<QStringList> rows;
    for (int i = 0; i < 12; ++i)
        rows << QStringList{QStringLiteral("房%1").arg(i), "物业费", i == 5 ? "99" : "10",
                            "2024-01-01"};
    OverviewBuilder builder("01", "一处", "202401");
    builder.add(FinanceReportKind::PropertyArrears, financeTable(rows));
    QStringList places;
    for (const LargestPlace &p : builder.result({}).largest)
        places << p.place;
    EXPECT_EQ(places,
              QStringList({"房5", "房0", "房1", "房2", "房3", "房4", "房6", "房7", "房8", "房9"}));
}

TEST(OverviewBuilder, AdvanceReceiptsByFeeItemAndTheMonthsTheyCover)
{
    OverviewBuilder builder("01", "一处", "202403");
    builder.add(FinanceReportKind::PropertyAdvance,
                financeTable({{"一处->2栋->101", "物业费", "100", "2024-05-01"},
                              {"一处->2栋->102", "物业费", "100", "2024-04-01"},
                              {"一处->2栋->102", "物业费", "100", "2024-12-01"}}));
    builder.add(FinanceReportKind::ParkingAdvance,
                financeTable({{"一处->地下车库->A-01", "停车费", "80.25", "2024-06-01"}}));
    const OfficeOverview o = builder.result({});
    EXPECT_FALSE(o.hasArrears);
    const auto line = [](const AdvanceLine &l) {
        return QStringLiteral("%1 %2 %3 %4-%5")
            .arg(l.feeItem)
            .arg(l.entries)
            .arg(l.amount.toText(), l.firstMonth, l.lastMonth);
    };
    ASSERT_EQ(o.propertyAdvance.lines.size(), 1);
    EXPECT_EQ(line(o.propertyAdvance.lines[0]), "物业费 3 300 202404-202412");
    EXPECT_EQ(line(o.parkingAdvance.subtotal), "车位小计 1 80.25 202406-202406");
    EXPECT_EQ(line(o.totalAdvance), "合计 4 380.25 202404-202412");
}

} // namespace
} // namespace quorvale

namespace quorvale {
namespace {

// A space rented out and owned owes in both parking blocks: one place,
// one line among the largest, however its rows are spread.
TEST(OverviewBuilder, APlaceOwingInBothBlocksIsOnePlace)
{
    OverviewBuilder builder("01", "一处", "202403");
    builder.add(FinanceReportKind::ParkingArrears,
                financeTable({{"一处->库->A-01", "停车费", "80", "2024-01-01"},
                              {"一处->库->B-02", "停车费", "50", "2024-02-01"},
                              {"一处->库->A-01", "停车费", "80", "2023-12-01"}}));
    const OfficeOverview o = builder.result({});
    EXPECT_EQ(o.parkingArrears.lines.value(0).places, 2);
    EXPECT_EQ(o.parkingArrears.subtotal.places, 2);
    ASSERT_EQ(o.largest.size(), 2);
    EXPECT_EQ(o.largest[0].place, "一处->库->A-01");
    EXPECT_EQ(o.largest[0].amount.toText(), "160");
    EXPECT_EQ(o.largest[0].firstMonth, "202312");
}

} // namespace
} // namespace quorvale
