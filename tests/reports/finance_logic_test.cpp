#include "ui/msgbox.h"
#include "reports/financecheck.h"
#include "reports/financestatements.h"
#include "reports/monthenddate.h"

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

ReportParams upToMonth()
{
    ReportParams p;
    p.officeCode = QStringLiteral("01");
    p.feeCodeList = QStringLiteral("'01','02'");
    p.month = QStringLiteral("202403");
    p.firstMonth = QStringLiteral("202401");
    p.lastMonth = QStringLiteral("202406");
    p.receiptCutOffText = QStringLiteral("2024/03/31");
    p.receiptCutOff = QDate(2024, 3, 31);
    p.receiptFrom = QDate(2024, 1, 1);
    p.receiptTo = QDate(2024, 2, 29);
    return p;
}

ReportParams ranges()
{
    ReportParams p = upToMonth();
    p.monthRange = true;
    p.receiptRange = true;
    return p;
}

#define ADDRESS_SELECT                                                                             \
    "Select Case When 楼表.地址1 Is Not Null Then 楼表.地址1 Else '' End + "               \
    " Case When 楼表.字1 Is Not Null Then 楼表.字1 Else '' End + "                           \
    " Case When 楼表.地址2 Is Not Null Then 楼表.地址2 Else '' End + "                     \
    " Case When 楼表.字2 Is Not Null Then 楼表.字2 Else '' End + "                           \
    " Case When 楼表.地址3 Is Not Null Then 楼表.地址3 Else '' End + "                     \
    " Case When 楼表.字3 Is Not Null Then 楼表.字3 Else '' End + "                           \
    " Case When 楼表.地址4 Is Not Null Then 楼表.地址4 Else '' End + "                     \
    " Case When 楼表.字4 Is Not Null Then 楼表.字4 Else '' End AS DZ,"
#define PROPERTY_JOINS                                                                             \
    " FROM 楼表 INNER JOIN"                                                                      \
    " 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN"                                              \
    " 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 INNER JOIN"                     \
    " 业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' INNER JOIN"       \
    " WYZJ on  WYZJ.zh_ID = 业主表.ZH_ID INNER JOIN"                                            \
    " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH LEFT JOIN"                                           \
    " FWXZK on  WYZJ.FWXZ_DH = FWXZK.FWXZ_dh "
#define PROPERTY_ORDER                                                                                           \
    " ORDER BY  LEN(楼表.地址1), 楼表.地址1, LEN(楼表.地址2), 楼表.地址2, LEN(楼表.地址3), " \
    "楼表.地址3, LEN(楼表.地址4), 楼表.地址4,len(室表.室),室表.室,"
#define RENTED_SELECT                                                                                                  \
    "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位申请登记表.车库编号, 车库名.车库名, " \
    "车位申请登记表.车位编号,DJ_ID, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM"
#define RENTED_JOINS                                                                                                   \
    " FROM WYZJ  INNER JOIN   车位申请登记表  ON WYZJ.DJ_ID=车位申请登记表.登记ID INNER JOIN "         \
    " 车库名 ON 车位申请登记表.车库编号 = 车库名.车库编号 and 车位申请登记表.管理处 = " \
    "车库名.管理处 INNER JOIN"                                                                                   \
    " 设置管理处 ON 设置管理处.GYD_DH = 车位申请登记表.管理处 INNER join "                         \
    " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH "
#define OWNED_SELECT                                                                                             \
    "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位说明表.车库编号, 车库名.车库名, " \
    "车位说明表.车位编号,cw_id, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM"
#define OWNED_JOINS                                                                                                            \
    " FROM WYZJ  INNER JOIN 车位产权 ON WYZJ.cw_id=车位产权.ID INNER JOIN"                                             \
    " 车位说明表 ON 车位产权.车位ID = 车位说明表.ID INNER JOIN"                                                \
    " 车库名 ON 车位说明表.车库编号 = 车库名.车库编号 and 车位说明表.管理处 = 车库名.管理处 " \
    "INNER JOIN"                                                                                                               \
    " 设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 INNER join "                                       \
    " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH "
#define RECEIPTS ",WYZJ.zj_skrq,wyzj.发票号码,wyzj.收款方式"
#define ADVANCE_UP_TO                                                                              \
    " Where 设置管理处.GYD_DH ='01' and WYZJ.ZJ_LX in ('01','02')"                            \
    " and (WYZJ.ZJ_SKRQ Is Not Null AND WYZJ.ZJ_SKRQ <='2024-03-31')"                              \
    " AND (WYZJ.ZJ_Cny>'202403')"
#define ADVANCE_RANGES                                                                             \
    " Where 设置管理处.GYD_DH ='01' and WYZJ.ZJ_LX in ('01','02')"                            \
    " and (WYZJ.ZJ_SKRQ Is Not Null AND (ZJ_SKRQ Between '2024-01-01' and '2024-02-29'))"          \
    " AND (WYZJ.ZJ_Cny>='202401' AND WYZJ.ZJ_CNY<='202406')"

struct StatementCase {
    const char *name;
    FinanceReportKind kind;
    ReportParams params;
    QStringList expected;
};

TEST(FinanceStatements, TextIsTheDesignedOneForEachReportAndMode)
{
    const StatementCase cases[] = {
        {"property arrears, one month",
         FinanceReportKind::PropertyArrears,
         upToMonth(),
         {QStringLiteral(ADDRESS_SELECT
                         "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,FWXZK.FWXZ_xz, "
                         "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" PROPERTY_JOINS
                         " Where 设置管理处.GYD_DH ='01' and WYZJ.ZJ_LX  in ('01','02')"
                         " and  ((WYZJ.ZJ_SKRQ Is Null) OR (ZJ_SKRQ>'2024/03/31')) AND  "
                         "ZJ_Cny<='202403'" PROPERTY_ORDER "WYZJ.zh_id,WYZJ.ZJ_CNY,WYZJ.ZJ_LX")}},
        {"property arrears, range",
         FinanceReportKind::PropertyArrears,
         ranges(),
         {QStringLiteral(ADDRESS_SELECT
                         "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,FWXZK.FWXZ_xz, "
                         "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" PROPERTY_JOINS
                         " Where 设置管理处.GYD_DH ='01' and WYZJ.ZJ_LX  in ('01','02')"
                         " and  ((WYZJ.ZJ_SKRQ Is Null) OR (ZJ_SKRQ>'2024/03/31')) AND  "
                         "(ZJ_Cny>='202401' AND ZJ_CNY<='202406')" PROPERTY_ORDER
                         "WYZJ.zh_id,WYZJ.ZJ_CNY,WYZJ.ZJ_LX")}},
        {"parking arrears, one month",
         FinanceReportKind::ParkingArrears,
         upToMonth(),
         {QStringLiteral(RENTED_SELECT RENTED_JOINS
                         " Where 设置管理处.GYD_DH ='01' and ZJ_SKRQ is null and  WYZJ.ZJ_LX  in "
                         "('01','02') and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'2024/03/31')) AND  "
                         "ZJ_Cny<='202403'"
                         " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID "
                         ",WYZJ.ZJ_CNY,WYZJ.ZJ_LX"),
          QStringLiteral(OWNED_SELECT OWNED_JOINS
                         " Where 设置管理处.GYD_DH ='01' and ZJ_SKRQ is null and WYZJ.ZJ_LX  in "
                         "('01','02') and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'2024/03/31')) AND  "
                         "ZJ_Cny<='202403'"
                         " ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id "
                         ",WYZJ.ZJ_CNY,WYZJ.ZJ_LX")}},
        {"parking arrears, range",
         FinanceReportKind::ParkingArrears,
         ranges(),
         {QStringLiteral(RENTED_SELECT RENTED_JOINS
                         " Where 设置管理处.GYD_DH ='01' and ZJ_SKRQ is null and  WYZJ.ZJ_LX  in "
                         "('01','02') and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'2024/03/31')) AND  "
                         "(ZJ_Cny>='202401' AND ZJ_CNY<='202406')"
                         " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID "
                         ",WYZJ.ZJ_CNY,WYZJ.ZJ_LX"),
          QStringLiteral(OWNED_SELECT OWNED_JOINS
                         " Where 设置管理处.GYD_DH ='01' and ZJ_SKRQ is null and WYZJ.ZJ_LX  in "
                         "('01','02') and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'2024/03/31')) AND  "
                         "(ZJ_Cny>='202401' AND ZJ_CNY<='202406')"
                         " ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id "
                         ",WYZJ.ZJ_CNY,WYZJ.ZJ_LX")}},
        {"parking advance, cut-off and one month",
         FinanceReportKind::ParkingAdvance,
         upToMonth(),
         {QStringLiteral(RENTED_SELECT RECEIPTS RENTED_JOINS ADVANCE_UP_TO
                         " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID "
                         ",WYZJ.ZJ_CNY"),
          QStringLiteral(OWNED_SELECT RECEIPTS OWNED_JOINS ADVANCE_UP_TO
                         " ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id "
                         ",WYZJ.ZJ_CNY")}},
        {"parking advance, ranges",
         FinanceReportKind::ParkingAdvance,
         ranges(),
         {QStringLiteral(RENTED_SELECT RECEIPTS RENTED_JOINS ADVANCE_RANGES
                         " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID "
                         ",WYZJ.ZJ_CNY"),
          QStringLiteral(OWNED_SELECT RECEIPTS OWNED_JOINS ADVANCE_RANGES
                         " ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id "
                         ",WYZJ.ZJ_CNY")}},
        {"property advance, cut-off and one month",
         FinanceReportKind::PropertyAdvance,
         upToMonth(),
         {QStringLiteral(
             ADDRESS_SELECT
             "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名, FWXZK.FWXZ_xz, "
             "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" RECEIPTS PROPERTY_JOINS ADVANCE_UP_TO
                 PROPERTY_ORDER "WYZJ.ZJ_CNY")}},
        {"property advance, ranges",
         FinanceReportKind::PropertyAdvance,
         ranges(),
         {QStringLiteral(
             ADDRESS_SELECT
             "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名, FWXZK.FWXZ_xz, "
             "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" RECEIPTS PROPERTY_JOINS
                 ADVANCE_RANGES PROPERTY_ORDER "WYZJ.ZJ_CNY")}},
    };
    for (const StatementCase &c : cases) {
        const QStringList actual = financeStatements(c.kind, c.params);
        ASSERT_EQ(actual.size(), c.expected.size()) << c.name;
        for (qsizetype i = 0; i < actual.size(); ++i)
            EXPECT_EQ(actual[i].toStdString(), c.expected[i].toStdString()) << c.name;
    }
}

TEST(FinanceStatements, QuotesInSplicedValuesAreDoubled)
{
    ReportParams p = upToMonth();
    p.officeCode = QStringLiteral("0'1");
    p.month = QStringLiteral("2024'3");
    p.receiptCutOffText = QStringLiteral("x' OR '1'='1");
    const QString text = financeStatements(FinanceReportKind::PropertyArrears, p).first();
    EXPECT_TRUE(text.contains(QStringLiteral("GYD_DH ='0''1' and")));
    EXPECT_TRUE(text.contains(QStringLiteral("ZJ_SKRQ>'x'' OR ''1''=''1')")));
    EXPECT_TRUE(text.contains(QStringLiteral("ZJ_Cny<='2024''3' ORDER BY")));
}

struct CheckCase {
    const char *name;
    FinanceReportKind kind;
    std::function<void(ReportParams &)> edit;
    FinanceCheck::Outcome outcome;
    const char *message;
    int style;
    QString title;
    const char *focus;
};

TEST(FinanceCheck, RefusalsInTheirOrderWithMessageTitleStyleAndFocus)
{
    const auto arrears = FinanceReportKind::PropertyArrears;
    const auto advance = FinanceReportKind::ParkingAdvance;
    const auto proceed = FinanceCheck::Outcome::Proceed;
    const auto refuse = FinanceCheck::Outcome::Refuse;
    const char *month = "请输入统计年月！";
    const char *reversed = "起始年月不能大于截止年月，请重新输入！";
    const char *receipts = "收款日期起始日期不能大于终止日期，请重新选择！";
    const CheckCase cases[] = {
        {"empty fee list stops silently before any check",
         arrears,
         [](ReportParams &p) {
             p.feeCodeList.clear();
             p.month = QStringLiteral("x");
         },
         FinanceCheck::Outcome::SilentStop,
         "",
         0,
         {},
         ""},
        {"month 13", arrears, [](ReportParams &p) { p.month = QStringLiteral("202413"); }, refuse,
         month, 0, QStringLiteral("提醒"), "Text1"},
        {"range months are not read in one-month mode",
         arrears,
         [](ReportParams &p) { p.firstMonth = QStringLiteral("bad"); },
         proceed,
         "",
         0,
         {},
         ""},
        {"bad first month", arrears,
         [](ReportParams &p) {
             p.monthRange = true;
             p.firstMonth = QStringLiteral("2024");
             p.lastMonth = QStringLiteral("bad");
         },
         refuse, month, 0, QStringLiteral("提醒"), "Text3"},
        {"bad last month", arrears,
         [](ReportParams &p) {
             p.monthRange = true;
             p.lastMonth = QStringLiteral("202400");
         },
         refuse, month, 0, QStringLiteral("提醒"), "Text4"},
        {"reversed range", arrears,
         [](ReportParams &p) {
             p.monthRange = true;
             p.firstMonth = QStringLiteral("202405");
             p.lastMonth = QStringLiteral("202404");
         },
         refuse, reversed, 64, QStringLiteral("提醒！"), ""},
        {"equal months",
         arrears,
         [](ReportParams &p) {
             p.monthRange = true;
             p.firstMonth = p.lastMonth = QStringLiteral("202405");
         },
         proceed,
         "",
         0,
         {},
         ""},
        {"bad cut-off text, no title of its own", arrears,
         [](ReportParams &p) { p.receiptCutOffText = QStringLiteral("2024/02/30"); }, refuse,
         "日期格式不正确，请重新输入日期！", 0, QString(), "Text2"},
        {"month checked before the cut-off", arrears,
         [](ReportParams &p) {
             p.month = QStringLiteral("2024");
             p.receiptCutOffText.clear();
         },
         refuse, month, 0, QStringLiteral("提醒"), "Text1"},
        {"reversed pickers refused in the cut-off mode", advance,
         [](ReportParams &p) { p.receiptFrom = QDate(2024, 3, 1); }, refuse, receipts, 80,
         exeName(), ""},
        {"reversed pickers pass in the range mode",
         advance,
         [](ReportParams &p) {
             p.receiptRange = true;
             p.receiptFrom = QDate(2024, 3, 1);
         },
         proceed,
         "",
         0,
         {},
         ""},
        {"months before pickers", FinanceReportKind::PropertyAdvance,
         [](ReportParams &p) {
             p.month = QStringLiteral("202413");
             p.receiptFrom = QDate(2024, 3, 1);
         },
         refuse, month, 0, QStringLiteral("提醒"), "Text1"},
    };
    for (const CheckCase &c : cases) {
        ReportParams p = upToMonth();
        c.edit(p);
        const FinanceCheck check = checkFinanceInput(c.kind, p);
        EXPECT_EQ(check.outcome, c.outcome) << c.name;
        EXPECT_EQ(check.message, QString::fromUtf8(c.message)) << c.name;
        EXPECT_EQ(check.style, c.style) << c.name;
        EXPECT_EQ(check.title, c.title) << c.name;
        EXPECT_EQ(check.focusControl, QString::fromUtf8(c.focus)) << c.name;
    }
}

} // namespace
} // namespace quorvale
