#include "reports/customerreports.h"
#include "reports/financecheck.h"
#include "reports/financestatements.h"
#include "reports/monthenddate.h"
#include "reports/officelist.h"
#include "runtime/programinfo.h"

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
    p.officeCode = "01";
    p.feeCodeList = "'01','02'";
    p.month = "202403";
    p.firstMonth = "202401";
    p.lastMonth = "202406";
    p.receiptCutOffText = "2024/03/31";
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

#define ADDRESS_SELECT                                                                             \
    "Select Case When 楼表.地址1 Is Not Null Then 楼表.地址1 Else '' End + "               \
    " Case When 楼表.字1 Is Not Null Then 楼表.字1 Else '' End + "                           \
    " Case When 楼表.地址2 Is Not Null Then 楼表.地址2 Else '' End + "                     \
    " Case When 楼表.字2 Is Not Null Then 楼表.字2 Else '' End + "                           \
    " Case When 楼表.地址3 Is Not Null Then 楼表.地址3 Else '' End + "                     \
    " Case When 楼表.字3 Is Not Null Then 楼表.字3 Else '' End + "                           \
    " Case When 楼表.地址4 Is Not Null Then 楼表.地址4 Else '' End + "                     \
    " Case When 楼表.字4 Is Not Null Then 楼表.字4 Else '' End AS DZ,"
#define BUILDING_ROOM_ORDER                                                                                      \
    " ORDER BY  LEN(楼表.地址1), 楼表.地址1, LEN(楼表.地址2), 楼表.地址2, LEN(楼表.地址3), " \
    "楼表.地址3, LEN(楼表.地址4), 楼表.地址4,len(室表.室),室表.室"
#define PROPERTY_JOINS                                                                             \
    " FROM 楼表 INNER JOIN"                                                                      \
    " 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN"                                              \
    " 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 INNER JOIN"                     \
    " 业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' INNER JOIN"       \
    " WYZJ on  WYZJ.zh_ID = 业主表.ZH_ID INNER JOIN"                                            \
    " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH LEFT JOIN"                                           \
    " FWXZK on  WYZJ.FWXZ_DH = FWXZK.FWXZ_dh "
#define PROPERTY_ARREARS(months)                                                                                 \
    ADDRESS_SELECT "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,FWXZK.FWXZ_xz, " \
                   "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" PROPERTY_JOINS                              \
                   " Where 设置管理处.GYD_DH ='01' and WYZJ.ZJ_LX  in ('01','02')"                          \
                   " and  ((WYZJ.ZJ_SKRQ Is Null) OR (ZJ_SKRQ>'2024/03/31')) AND  " months                       \
                       BUILDING_ROOM_ORDER ",WYZJ.zh_id,WYZJ.ZJ_CNY,WYZJ.ZJ_LX"
#define PROPERTY_ADVANCE(where)                                                                                   \
    ADDRESS_SELECT "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名, FWXZK.FWXZ_xz, " \
                   "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" RECEIPTS PROPERTY_JOINS where                \
                       BUILDING_ROOM_ORDER ",WYZJ.ZJ_CNY"
#define RENTED_SELECT                                                                                                  \
    "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位申请登记表.车库编号, 车库名.车库名, " \
    "车位申请登记表.车位编号,DJ_ID, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM"
#define RENTED_JOINS                                                                                                   \
    " FROM WYZJ  INNER JOIN   车位申请登记表  ON WYZJ.DJ_ID=车位申请登记表.登记ID INNER JOIN "         \
    " 车库名 ON 车位申请登记表.车库编号 = 车库名.车库编号 and 车位申请登记表.管理处 = " \
    "车库名.管理处 INNER JOIN"                                                                                   \
    " 设置管理处 ON 设置管理处.GYD_DH = 车位申请登记表.管理处 INNER join "                         \
    " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH "
#define RENTED_ORDER                                                                               \
    " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID ,WYZJ.ZJ_CNY"
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
#define OWNED_ORDER " ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id ,WYZJ.ZJ_CNY"
#define PARKING_ARREARS(gap, months)                                                               \
    " Where 设置管理处.GYD_DH ='01' and ZJ_SKRQ is null and" gap "WYZJ.ZJ_LX  in ('01','02') "     \
    "and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'2024/03/31')) AND  " months
#define RECEIPTS ",WYZJ.zj_skrq,wyzj.发票号码,wyzj.收款方式"
#define ONE_MONTH "ZJ_Cny<='202403'"
#define MONTH_RANGE "(ZJ_Cny>='202401' AND ZJ_CNY<='202406')"
#define ADVANCE_UP_TO                                                                              \
    " Where 设置管理处.GYD_DH ='01' and WYZJ.ZJ_LX in ('01','02')"                            \
    " and (WYZJ.ZJ_SKRQ Is Not Null AND WYZJ.ZJ_SKRQ <='2024-03-31')"                              \
    " AND (WYZJ.ZJ_Cny>'202403')"
#define ADVANCE_RANGES                                                                             \
    " Where 设置管理处.GYD_DH ='01' and WYZJ.ZJ_LX in ('01','02')"                            \
    " and (WYZJ.ZJ_SKRQ Is Not Null AND (ZJ_SKRQ Between '2024-01-01' and '2024-02-29'))"          \
    " AND (WYZJ.ZJ_Cny>='202401' AND WYZJ.ZJ_CNY<='202406')"

TEST(ReportStatements, TextIsTheDesignedOneForEachReportAndMode)
{
    using Kind = FinanceReportKind;
    const struct {
        const char *name;
        QStringList actual, expected;
    } cases[] = {
        {"property customers",
         {propertyCustomerStatement("07")},
         {ADDRESS_SELECT "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,"
                         "业主表.移动电话,室表.建筑面积, FWXZK.FWXZ_xz,业主表.进户日期,"
                         "业主表.开始收费日期 FROM 楼表 INNER JOIN 室表 ON 楼表.L_ID = 室表.L_ID "
                         "INNER JOIN 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 left JOIN "
                         "业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' left JOIN "
                         "FWXZK ON FWXZK.FWXZ_dh = 室表.房屋性质  Where 设置管理处.GYD_DH "
                         "='07' " BUILDING_ROOM_ORDER}},
        {"parking customers",
         {parkingCustomerStatement("07")},
         {"SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车库名.车库名,车位说明表.车库编号,"
          "车位说明表.车位编号,车位说明表.产权类别,车位说明表.计费日期,车位申请登记表.登记日期,"
          "车位说明表.产权人,车位申请登记表.车主姓名 FROM 车库名 INNER JOIN 车位说明表 ON "
          "车位说明表.车库编号 = 车库名.车库编号 and 车位说明表.管理处 = 车库名.管理处 INNER JOIN "
          "设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 left join  车位申请登记表 ON "
          "车位说明表.车库编号 = 车位申请登记表.车库编号 and 车位说明表.管理处 = "
          "车位申请登记表.管理处 and 车位说明表.车位编号 = 车位申请登记表.车位编号 and "
          "车位说明表.DJ_ID = 车位申请登记表.登记ID and 车位申请登记表.结账日期 is null "
          "Where 车库名.管理处 ='07'  order by 车位说明表.车库编号,车位说明表.车位编号"}},
        {"property arrears, one month",
         financeStatements(Kind::PropertyArrears, upToMonth()),
         {PROPERTY_ARREARS(ONE_MONTH)}},
        {"property arrears, range",
         financeStatements(Kind::PropertyArrears, ranges()),
         {PROPERTY_ARREARS(MONTH_RANGE)}},
        {"parking arrears, one month",
         financeStatements(Kind::ParkingArrears, upToMonth()),
         {RENTED_SELECT RENTED_JOINS PARKING_ARREARS("  ", ONE_MONTH) RENTED_ORDER ",WYZJ.ZJ_LX",
          OWNED_SELECT OWNED_JOINS PARKING_ARREARS(" ", ONE_MONTH) OWNED_ORDER ",WYZJ.ZJ_LX"}},
        {"parking arrears, range",
         financeStatements(Kind::ParkingArrears, ranges()),
         {RENTED_SELECT RENTED_JOINS PARKING_ARREARS("  ", MONTH_RANGE) RENTED_ORDER ",WYZJ.ZJ_LX",
          OWNED_SELECT OWNED_JOINS PARKING_ARREARS(" ", MONTH_RANGE) OWNED_ORDER ",WYZJ.ZJ_LX"}},
        {"parking advance, cut-off and one month",
         financeStatements(Kind::ParkingAdvance, upToMonth()),
         {RENTED_SELECT RECEIPTS RENTED_JOINS ADVANCE_UP_TO RENTED_ORDER,
          OWNED_SELECT RECEIPTS OWNED_JOINS ADVANCE_UP_TO OWNED_ORDER}},
        {"parking advance, ranges",
         financeStatements(Kind::ParkingAdvance, ranges()),
         {RENTED_SELECT RECEIPTS RENTED_JOINS ADVANCE_RANGES RENTED_ORDER,
          OWNED_SELECT RECEIPTS OWNED_JOINS ADVANCE_RANGES OWNED_ORDER}},
        {"property advance, cut-off and one month",
         financeStatements(Kind::PropertyAdvance, upToMonth()),
         {PROPERTY_ADVANCE(ADVANCE_UP_TO)}},
        {"property advance, ranges",
         financeStatements(Kind::PropertyAdvance, ranges()),
         {PROPERTY_ADVANCE(ADVANCE_RANGES)}},
    };
    for (const auto &c : cases) {
        ASSERT_EQ(c.actual.size(), c.expected.size()) << c.name;
        for (qsizetype i = 0; i < c.actual.size(); ++i)
            EXPECT_EQ(c.actual[i].toStdString(), c.expected[i].toStdString()) << c.name;
    }
}

TEST(ReportStatements, QuotesInSplicedValuesAreDoubled)
{
    ReportParams p = upToMonth();
    p.officeCode = "0'1";
    p.month = "2024'3";
    p.receiptCutOffText = "x' OR '1'='1";
    const QString arrears = financeStatements(FinanceReportKind::PropertyArrears, p).first();
    const std::pair<QString, const char *> cases[] = {
        {officeStatement(OfficeQueryStyle::Property, false, "D'1"), "='D''1' Order"},
        {propertyCustomerStatement("O'Neil"), "GYD_DH ='O''Neil'  ORDER"},
        {parkingCustomerStatement("a'b"), "管理处 ='a''b'  order"},
        {arrears, "GYD_DH ='0''1' and"},
        {arrears, "ZJ_SKRQ>'x'' OR ''1''=''1')"},
        {arrears, "ZJ_Cny<='2024''3' ORDER BY"},
    };
    for (const auto &[text, spliced] : cases)
        EXPECT_TRUE(text.contains(QString::fromUtf8(spliced))) << text.toStdString();
}

TEST(FinanceCheck, RefusalsInTheirOrderWithMessageTitleStyleAndFocus)
{
    ReportParams noFees = upToMonth();
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
        ReportParams p = upToMonth();
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
