#include "reports/customerreports.h"
#include "reports/financecheck.h"
#include "reports/financestatements.h"
#include "reports/monthenddate.h"
#include "reports/officelist.h"
#include "runtime/programinfo.h"
#include "support/fixturedb.h"

#include <gtest/gtest.h>

namespace quorvale {
namespace {

TEST(MonthEndDate, LastDayOfTheMonthTextIncludingLeapYearsAndOutOfRangeMonths)
{
    const struct {
        const char *month;
        const char *expected;
    } cases[] = {
        {"202402", "2024-02-29"}, {"190002", "1900-02-28"}, {"200002", "2000-02-29"},
        {"210002", "2100-02-28"}, {"202302", "2023-02-28"}, {"202401", "2024-01-31"},
        {"202404", "2024-04-30"}, {"202407", "2024-07-31"}, {"202408", "2024-08-31"},
        {"202411", "2024-11-30"}, {"202412", "2024-12-31"}, {"202400", "2024-00-30"},
        {"202413", "2024-13-30"}, {"202499", "2024-99-30"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(MonthEndDate(QString::fromUtf8(c.month)), QString::fromUtf8(c.expected))
            << c.month;
}

// Office 0'1 (a quote in its code, as a spliced value may hold), March 2024
// or January to June, receipts by the end of March or in January and February.
ReportParams params(bool ranges)
{
    ReportParams p;
    p.officeCode = "0'1";
    p.feeCodeList = "'01','03','11'";
    p.month = "202403";
    p.firstMonth = "202401";
    p.lastMonth = "202406";
    p.monthRange = p.receiptRange = ranges;
    p.receiptCutOffText = "2024/03/31";
    p.receiptCutOff = QDate(2024, 3, 31);
    p.receiptFrom = QDate(2024, 1, 1);
    p.receiptTo = QDate(2024, 2, 29);
    return p;
}

TEST(OfficeStatement, KeepsEachWindowsBlanks)
{
    const QString dept =
        "Select  GYD_DH,GYD_Name,商用物业  From 设置管理处  Where 对应部门代号='D1'";
    const QString all = "Select GYD_DH,GYD_Name,商用物业  From 设置管理处";
    const QString order = "Order By len(GYD_dh),GYD_DH";
    // The blanks before "Order By" for the department's offices and for all of them.
    const std::tuple<OfficeQueryStyle, const char *, const char *> cases[] = {
        {OfficeQueryStyle::Property, " ", " "},
        {OfficeQueryStyle::Parking, "  ", "  "},
        {OfficeQueryStyle::Finance, "   ", "  "},
    };
    for (const auto &[style, deptGap, allGap] : cases) {
        EXPECT_EQ(officeStatement(style, false, "D1"), dept + deptGap + order) << int(style);
        EXPECT_EQ(officeStatement(style, true, "D1"), all + allGap + order) << int(style);
    }
}

// Office 0'1 with two buildings, "2栋" listed before "10栋", a car park of a
// rented-and-owned space and an owned one, and their ledgers.
class ReportRows : public ::testing::Test {
  protected:
    void SetUp() override
    {
        db.insert("设置管理处", {{"GYD_DH", "0'1"}, {"GYD_Name", "一处"}});
        db.insertRows("SetupSFXM", {"DH", "XM"},
                      {{"01", "物业费"}, {"03", "电梯费"}, {"11", "停车费"}});
        db.insertRows("楼表", {"L_ID", "管理处", "地址1", "字1"},
                      {{10, "0'1", "10", "栋"}, {2, "0'1", "2", "栋"}});
        db.insertRows("室表", {"S_ID", "L_ID", "室"}, {{101, 2, "101"}, {1001, 10, "1001"}});
        db.insertRows(
            "业主表", {"ZH_ID", "S_ID", "姓名", "说明"},
            {{1, 101, "王五", "新进户"}, {2, 101, "赵六", "迁出户"}, {3, 1001, "钱七", "新进户"}});
        db.insert("FWXZK", {{"FWXZ_dh", "Z"}, {"FWXZ_xz", "住宅"}});
        db.insertRows("车库名", {"管理处", "车库编号", "车库名"},
                      {{"0'1", "G1", "地下车库"}, {"0'1", "G2", "地面"}});
        db.insert("车位申请登记表",
                  {{"登记ID", 500}, {"管理处", "0'1"}, {"车库编号", "G1"}, {"车位编号", "A-01"}});
        db.insertRows("车位说明表", {"ID", "管理处", "车库编号", "车位编号"},
                      {{600, "0'1", "G1", "A-01"}, {601, "0'1", "G2", "B-02"}});
        db.insertRows("车位产权", {"ID", "车位ID"}, {{700, 600}, {701, 601}});
        const QVariant none;
        db.insertRows(
            "WYZJ",
            {"ZJ_ID", "zh_ID", "DJ_ID", "cw_id", "FWXZ_DH", "ZJ_CNY", "ZJ_LX", "ZJ_JE", "ZJ_SKRQ"},
            {
                {1, 1, none, none, "Z", "202401", "01", 100, none},
                {2, 1, none, none, "Z", "202403", "01", 90, QDate(2024, 3, 31)},
                {3, 1, none, none, "Z", "202403", "03", 30, QDate(2024, 4, 1)},
                {4, 1, none, none, "Z", "202404", "01", 100, none},
                {5, 3, none, none, "Z", "202312", "01", 100, none},
                {6, 1, none, none, "Z", "202401", "02", 100, none},
                {7, 1, none, none, "Z", "202405", "01", 100, QDate(2024, 2, 10)},
                {8, 3, none, none, "Z", "202404", "01", 100, QDate(2024, 3, 20)},
                {20, none, 500, 700, "Z", "202402", "11", 80, none},
                {21, none, 500, none, "Z", "202403", "11", 80, QDate(2024, 4, 1)},
                {22, none, none, 701, "Z", "202401", "11", 80, none},
                {23, none, 500, none, "Z", "202405", "11", 80, QDate(2024, 2, 1)},
                {24, none, none, 701, "Z", "202405", "11", 80, none},
            });
    }

    // The chosen fields of every row of the statements, the rows parted by " | ".
    std::string rows(const QStringList &statements, std::initializer_list<int> fields) const
    {
        QStringList out;
        for (const QString &statement : statements)
            for (const QStringList &row : db.rows(statement)) {
                QStringList picked;
                for (int field : fields)
                    picked << row.value(field);
                out << picked.join(QLatin1Char(' '));
            }
        return out.join(QStringLiteral(" | ")).toStdString();
    }

    FixtureDb db;
};

TEST_F(ReportRows, CustomerReportsListEveryRoomAndSpaceOfTheOfficeInBuildingOrder)
{
    EXPECT_EQ(rows({propertyCustomerStatement("0'1")}, {0, 1, 3, 4}),
              "2栋 0'1 101 王五 | 10栋 0'1 1001 钱七");
    EXPECT_EQ(rows({parkingCustomerStatement("0'1")}, {2, 3, 4}),
              "地下车库 G1 A-01 | 地面 G2 B-02");
    EXPECT_EQ(rows({propertyCustomerStatement("0")}, {0}), "");
}

TEST_F(ReportRows, FinanceReportsSelectTheirMonthsAndReceiptsInEachMode)
{
    using Kind = FinanceReportKind;
    const std::initializer_list<int> property = {0, 6, 8}, parking = {2, 4, 6};
    const struct {
        const char *name;
        Kind kind;
        bool ranges;
        std::initializer_list<int> fields;
        const char *expected; // place, billing month (and fee item) of each row
    } cases[] = {
        {"property arrears up to the month, received after the cut-off or not at all",
         Kind::PropertyArrears, false, property, "2栋 202401 01 | 2栋 202403 03 | 10栋 202312 01"},
        {"property arrears in the month range", Kind::PropertyArrears, true, property,
         "2栋 202401 01 | 2栋 202403 03 | 2栋 202404 01"},
        {"parking arrears: never received, rented spaces then owned ones", Kind::ParkingArrears,
         false, parking, "G1 A-01 202402 | G1 A-01 202402 | G2 B-02 202401"},
        {"parking arrears in the month range", Kind::ParkingArrears, true, parking,
         "G1 A-01 202402 | G1 A-01 202402 | G2 B-02 202401 | G2 B-02 202405"},
        {"property advance: received by the cut-off for later months", Kind::PropertyAdvance, false,
         property, "2栋 202405 01 | 10栋 202404 01"},
        {"property advance: received in the range for months in the range", Kind::PropertyAdvance,
         true, property, "2栋 202405 01"},
        {"parking advance: received by the cut-off", Kind::ParkingAdvance, false, parking,
         "G1 A-01 202405"},
        {"parking advance: received in the range", Kind::ParkingAdvance, true, parking,
         "G1 A-01 202405"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(rows(financeStatements(c.kind, params(c.ranges)), c.fields), c.expected)
            << c.name;
}

TEST(FinanceCheck, RefusalsInTheirOrderWithMessageTitleStyleAndFocus)
{
    ReportParams noFees = params(false);
    noFees.feeCodeList.clear();
    noFees.month = "x"; // not looked at
    EXPECT_EQ(checkFinanceInput(FinanceReportKind::PropertyArrears, noFees).outcome,
              FinanceCheck::Outcome::SilentStop);

    const auto arrears = FinanceReportKind::PropertyArrears;
    const QString month = "请输入统计年月！|0|提醒|";
    const QDate none, march(2024, 3, 1); // march: after the end of the receipt range
    const struct {
        const char *name;
        FinanceReportKind kind;
        bool monthRange;
        const char *month, *first, *last, *cutOff;
        bool receiptRange;
        QDate receiptFrom; // the range ends 2024-02-29
        QString expected;  // "proceed", or the refusal's message|style|title|focus
    } cases[] = {
        {"month 13", arrears, false, "202413", "", "", "2024/03/31", false, none, month + "Text1"},
        {"range months are not read in one-month mode", arrears, false, "202403", "bad", "bad",
         "2024/03/31", false, none, "proceed"},
        {"bad first month", arrears, true, "", "2024", "bad", "2024/03/31", false, none,
         month + "Text3"},
        {"bad last month", arrears, true, "", "202401", "202400", "2024/03/31", false, none,
         month + "Text4"},
        {"reversed range", arrears, true, "", "202405", "202404", "2024/03/31", false, none,
         "起始年月不能大于截止年月，请重新输入！|64|提醒！|"},
        {"equal months", arrears, true, "", "202405", "202405", "2024/03/31", false, none,
         "proceed"},
        {"bad cut-off text, no title of its own", arrears, false, "202403", "", "", "2024/02/30",
         false, none, "日期格式不正确，请重新输入日期！|0||Text2"},
        {"month checked before the cut-off", arrears, false, "2024", "", "", "", false, none,
         month + "Text1"},
        {"reversed pickers refused in the cut-off mode", FinanceReportKind::ParkingAdvance, false,
         "202403", "", "", "", false, march,
         "收款日期起始日期不能大于终止日期，请重新选择！|80|" + exeName() + "|"},
        {"reversed pickers pass in the range mode", FinanceReportKind::ParkingAdvance, false,
         "202403", "", "", "", true, march, "proceed"},
        {"months before pickers", FinanceReportKind::PropertyAdvance, false, "202413", "", "", "",
         false, march, month + "Text1"},
    };
    for (const auto &c : cases) {
        ReportParams p = params(false);
        p.monthRange = c.monthRange;
        p.month = QString::fromUtf8(c.month);
        p.firstMonth = QString::fromUtf8(c.first);
        p.lastMonth = QString::fromUtf8(c.last);
        p.receiptCutOffText = QString::fromUtf8(c.cutOff);
        p.receiptRange = c.receiptRange;
        if (c.receiptFrom.isValid())
            p.receiptFrom = c.receiptFrom;
        const FinanceCheck check = checkFinanceInput(c.kind, p);
        const QString got = check.proceeds()
                                ? "proceed"
                                : QStringList{check.message, QString::number(check.style),
                                              check.title, check.focusControl}
                                      .join(QLatin1Char('|'));
        EXPECT_EQ(got.toStdString(), c.expected.toStdString()) << c.name;
    }
}

} // namespace
} // namespace quorvale
