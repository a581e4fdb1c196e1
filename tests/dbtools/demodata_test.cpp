#include "reports/customerreports.h"
#include "session/sessionqueries.h"
#include "support/fixturedb.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

const QDate kToday(2026, 11, 22);

class DemoData : public ::testing::Test {
  protected:
    static void SetUpTestSuite()
    {
        s_db = new FixtureDb;
        s_db->loadDemo(kToday);
    }
    static void TearDownTestSuite()
    {
        delete s_db;
        s_db = nullptr;
    }
    static int count(const QString &fromWhere)
    {
        return s_db->scalar("Select count(*) " + fromWhere).toInt();
    }
    static QStringList column(const QString &tsql)
    {
        QStringList values;
        for (const QStringList &row : s_db->rows(tsql))
            values << row.value(0);
        return values;
    }
    static FixtureDb *s_db;
};

FixtureDb *DemoData::s_db = nullptr;

} // namespace

TEST_F(DemoData, OfficesListShortCodesFirstWithCommercialAndNullMarks)
{
    const auto offices =
        s_db->rows("Select GYD_DH,GYD_Name,商用物业  From 设置管理处 Order By len(GYD_dh),GYD_DH");
    QStringList codes, marks;
    for (const QStringList &row : offices) {
        codes << row[0];
        marks << row[2];
    }
    EXPECT_EQ(codes, (QStringList{"2", "3", "10", "1A"}));
    EXPECT_EQ(marks, (QStringList{"0", "0", "", "1"}));
}

TEST_F(DemoData, RoomsAndBuildingsCoverTheFloorAndAddressRules)
{
    EXPECT_EQ(
        column(
            "Select DISTINCT 室 From 室表 Where 室 In ('12','101','1001','0502','B203','123456')")
            .size(),
        6);
    // 1002 was never sold; 0602's only owner has moved out.
    EXPECT_EQ(column("Select 室表.室 From 室表 left JOIN 业主表 ON 室表.S_ID = 业主表.S_ID and "
                     "业主表.说明='新进户' Where 业主表.ZH_ID Is Null Order By 室表.室"),
              (QStringList{"0602", "1002"}));
    EXPECT_GT(count("From 楼表 Where 地址2 Is Null And 地址3 Is Not Null"), 0);
    EXPECT_GT(count("From 楼表 Where 字1 Is Null And 地址2 Is Null"), 0);
    EXPECT_GT(count("From 楼表 Where 地址2 = '2'"), 0);
    EXPECT_GT(count("From 楼表 Where 地址2 = '10'"), 0);
}

TEST_F(DemoData, UsersHaveOneSeveralOrNoCurrentPost)
{
    const QList<std::pair<QString, int>> users = {
        {"1001", 1}, {"1002", 2}, {"1003", 0}, {"1004", 1}, {"1005", 1}};
    for (const auto &[user, posts] : users)
        EXPECT_EQ(s_db->rows(currentPostsSql(user)).size(), posts) << user.toStdString();
    // The one who left still passes the password check.
    EXPECT_EQ(count("From 员工档案 Where 工号 ='1003' and 帐号密码='666666'"), 1);
}

TEST_F(DemoData, ProjectAuditRightDependsOnDepartmentPostAndType)
{
    const QList<std::tuple<QString, QString, bool>> posts = {
        {"D03", "GW05", true},  {"D01", "GW01", true},  {"D01", "GW02", false},
        {"D03", "GW04", false}, {"D02", "GW03", false}, {"D02", "GW06", false}};
    for (const auto &[dept, post, right] : posts) {
        EXPECT_EQ(!s_db->rows(projectAuditSql(dept, post)).isEmpty(), right) << post.toStdString();
    }
}

TEST_F(DemoData, MenuPrivilegesGrantAndWithhold)
{
    const auto rows = s_db->rows(privilegeSql("GW02", "统计报表"));
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_EQ(rows.first()[5], "0");
    EXPECT_EQ(rows.last()[5], "1");
}

TEST_F(DemoData, FeeItemsOfBothCategoriesWithOneWithdrawnEach)
{
    EXPECT_EQ(column("SELECT *   FROM SetupSFXM  where 收费类别= '停车收费' AND 终止日期 Is Null "
                     "ORDER BY DH"),
              (QStringList{"11", "12"}));
    EXPECT_EQ(
        column(
            "SELECT *  FROM SetupSFXM Where 收费类别='日常收费' and 终止日期 Is Null ORDER BY DH"),
        (QStringList{"01", "02", "04"}));
    EXPECT_EQ(count("From SetupSFXM Where 终止日期 Is Not Null"), 2);
}

TEST_F(DemoData, LedgerRunsTwoYearsToThisMonthWithEveryPaymentState)
{
    EXPECT_EQ(s_db->scalar("Select min(ZJ_CNY) From WYZJ"), "202412");
    EXPECT_EQ(s_db->scalar("Select max(ZJ_CNY) From WYZJ Where ZJ_SKRQ Is Null"), "202611");
    const QString cutOff = "'2026-11-01'";
    const QStringList states = {
        "ZJ_SKRQ Is Null",
        "ZJ_SKRQ < " + cutOff,
        "ZJ_SKRQ = " + cutOff,
        "ZJ_SKRQ > " + cutOff,
        "ZJ_CNY > '202611' And ZJ_SKRQ <= '2026-11-22'", // paid in advance
        "ZJ_JE Is Null",
    };
    for (const QString owner : {"zh_ID", "DJ_ID", "cw_id"})
        for (const QString &state : states)
            EXPECT_GT(count("From WYZJ Where " + owner + " Is Not Null And " + state), 0)
                << owner.toStdString() << ": " << state.toStdString();
    EXPECT_GT(count("From WYZJ LEFT JOIN FWXZK on  WYZJ.FWXZ_DH = FWXZK.FWXZ_dh Where "
                    "WYZJ.FWXZ_DH Is Not Null And FWXZK.FWXZ_dh Is Null"),
              0);
    // Receipts never lie in the future.
    EXPECT_EQ(count("From WYZJ Where ZJ_SKRQ > '2026-11-22'"), 0);
}

TEST_F(DemoData, ParkingHasRentedOwnedSettledAndOrphanedSpaces)
{
    const auto spaces = s_db->rows(parkingCustomerStatement("2"));
    EXPECT_EQ(spaces.size(), count("From 车位说明表 Where 管理处 = '2'"));
    int applicant = 0, owner = 0, neither = 0, unnamedPark = 0;
    for (const QStringList &row : spaces) {
        applicant += !row[9].isEmpty();
        owner += row[9].isEmpty() && !row[8].isEmpty();
        neither += row[9].isEmpty() && row[8].isEmpty();
        unnamedPark += row[2].isEmpty();
    }
    EXPECT_GT(applicant, 0);
    EXPECT_GT(owner, 0);
    EXPECT_GT(neither, 0);
    EXPECT_GT(unnamedPark, 0);
    // A settled application still named by its space, with a title owner.
    EXPECT_GT(
        count(
            "From 车位说明表 INNER JOIN 车位申请登记表 ON 车位说明表.DJ_ID = 车位申请登记表.登记ID "
            "Where 车位申请登记表.结账日期 Is Not Null And 车位说明表.产权人 Is Not Null"),
        0);
    // Rented out and owned at once, with receivables under both.
    EXPECT_GT(
        count("From 车位说明表 INNER JOIN 车位产权 ON 车位产权.车位ID = 车位说明表.ID INNER JOIN "
              "车位申请登记表 ON 车位说明表.DJ_ID = 车位申请登记表.登记ID INNER JOIN WYZJ ON "
              "WYZJ.DJ_ID "
              "= 车位申请登记表.登记ID Where 车位申请登记表.结账日期 Is Null"),
        0);
    EXPECT_GT(count("From WYZJ Where DJ_ID Is Not Null And cw_id Is Not Null"), 0);
    EXPECT_GT(
        count(
            "From 车位申请登记表 LEFT JOIN 车库名 ON 车位申请登记表.车库编号 = 车库名.车库编号 and "
            "车位申请登记表.管理处 = 车库名.管理处 INNER JOIN WYZJ ON WYZJ.DJ_ID = "
            "车位申请登记表.登记ID "
            "Where 车库名.车库编号 Is Null"),
        0);
}

TEST(DemoDataSet, SameDayGivesTheSameRowsAndTheLedgerFollowsToday)
{
    const QStringList tables = {"员工档案",       "岗位员工new", "设置管理处", "楼表",
                                "室表",           "业主表",      "车库名",     "车位说明表",
                                "车位申请登记表", "车位产权",    "SetupSFXM",  "WYZJ"};
    FixtureDb first, second, later;
    first.loadDemo(kToday);
    second.loadDemo(kToday);
    later.loadDemo(kToday.addMonths(5));
    for (const QString &table : tables)
        EXPECT_EQ(first.rows("Select * From " + table), second.rows("Select * From " + table))
            << table.toStdString();
    EXPECT_EQ(later.scalar("Select max(ZJ_CNY) From WYZJ Where ZJ_SKRQ Is Null"), "202704");
}
