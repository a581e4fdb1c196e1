#include "support/fixturedb.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

// The reports' joins and conditions for office BIG with each window's default
// parameters on 2026-11-22: month 202611, receipt cut-off today.
const QString kAddress = "Select Case When 楼表.地址1 Is Not Null Then 楼表.地址1 Else '' End + "
                         " Case When 楼表.字1 Is Not Null Then 楼表.字1 Else '' End + "
                         " Case When 楼表.地址2 Is Not Null Then 楼表.地址2 Else '' End + "
                         " Case When 楼表.字2 Is Not Null Then 楼表.字2 Else '' End + "
                         " Case When 楼表.地址3 Is Not Null Then 楼表.地址3 Else '' End + "
                         " Case When 楼表.字3 Is Not Null Then 楼表.字3 Else '' End + "
                         " Case When 楼表.地址4 Is Not Null Then 楼表.地址4 Else '' End + "
                         " Case When 楼表.字4 Is Not Null Then 楼表.字4 Else '' End AS DZ,";
const QString kAddressOrder = " ORDER BY  LEN(楼表.地址1), 楼表.地址1, LEN(楼表.地址2), "
                              "楼表.地址2, LEN(楼表.地址3), 楼表.地址3, "
                              "LEN(楼表.地址4), 楼表.地址4,len(室表.室),室表.室";
const QString kFeeJoins =
    " FROM 楼表 INNER JOIN 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN 设置管理处 ON "
    "设置管理处.GYD_DH = 楼表.管理处 INNER JOIN 业主表 ON 室表.S_ID = 业主表.S_ID and "
    "业主表.说明='新进户' INNER JOIN WYZJ on  WYZJ.zh_ID = 业主表.ZH_ID INNER JOIN "
    "SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH LEFT JOIN FWXZK on  WYZJ.FWXZ_DH = "
    "FWXZK.FWXZ_dh  Where 设置管理处.GYD_DH ='BIG' and WYZJ.ZJ_LX  in ('01','02','04')";
const QString kRentalJoins = " FROM WYZJ  INNER JOIN   车位申请登记表  ON "
                             "WYZJ.DJ_ID=车位申请登记表.登记ID INNER JOIN  车库名 ON "
                             "车位申请登记表.车库编号 = 车库名.车库编号 and 车位申请登记表.管理处 "
                             "= 车库名.管理处 INNER JOIN 设置管理处 "
                             "ON 设置管理处.GYD_DH = 车位申请登记表.管理处 INNER join  SETUPSFXM "
                             "on  WYZJ.ZJ_LX = SETUPSFXM.DH ";
const QString kOwnedJoins = " FROM WYZJ  INNER JOIN 车位产权 ON WYZJ.cw_id=车位产权.ID INNER JOIN "
                            "车位说明表 ON 车位产权.车位ID = "
                            "车位说明表.ID INNER JOIN 车库名 ON 车位说明表.车库编号 = "
                            "车库名.车库编号 and 车位说明表.管理处 = "
                            "车库名.管理处 INNER JOIN 设置管理处 ON 设置管理处.GYD_DH = "
                            "车位说明表.管理处 INNER join  SETUPSFXM on  "
                            "WYZJ.ZJ_LX = SETUPSFXM.DH ";
const QString kArrears =
    " and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'2026/11/22')) AND  ZJ_Cny<='202611'";
const QString kAdvance =
    " and (WYZJ.ZJ_SKRQ Is Not Null AND WYZJ.ZJ_SKRQ <='2026-11-22') AND (WYZJ.ZJ_Cny>'202611')";

struct Report {
    const char *name;
    QStringList statements;
};

} // namespace

TEST(BenchmarkOffice, EveryReportYieldsScaleRowsWithDefaultParameters)
{
    constexpr int scale = 37;
    FixtureDb db;
    db.loadDemo(QDate(2026, 11, 22), scale);
    const QList<Report> reports = {
        {"property customers",
         {kAddress +
          "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,业主表.移动电话,室表.建筑面积,"
          " "
          "FWXZK.FWXZ_xz,业主表.进户日期,业主表.开始收费日期 FROM 楼表 INNER JOIN 室表 ON "
          "楼表.L_ID = "
          "室表.L_ID INNER JOIN 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 left JOIN 业主表 ON "
          "室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' left JOIN FWXZK ON FWXZK.FWXZ_dh = "
          "室表.房屋性质  Where 设置管理处.GYD_DH ='BIG' " +
          kAddressOrder}},
        {"parking customers",
         {"SELECT "
          "设置管理处.GYD_DH,车库名.车库名,车位说明表.车位编号,车位说明表.产权人,车位申请登记表."
          "车主姓名"
          " FROM 车库名 INNER JOIN 车位说明表 ON 车位说明表.车库编号 = 车库名.车库编号 and "
          "车位说明表.管理处 = "
          "车库名.管理处 INNER JOIN 设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 left join  "
          "车位申请登记表 "
          "ON 车位说明表.车库编号 = 车位申请登记表.车库编号 and 车位说明表.管理处 = "
          "车位申请登记表.管理处 and "
          "车位说明表.车位编号 = 车位申请登记表.车位编号 and 车位说明表.DJ_ID = "
          "车位申请登记表.登记ID and "
          "车位申请登记表.结账日期 is null Where 车库名.管理处 ='BIG'  order by "
          "车位说明表.车库编号,车位说明表.车位编号"}},
        {"property arrears",
         {kAddress +
          "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,FWXZK.FWXZ_xz, WYZJ.ZJ_CNY "
          ",WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" +
          kFeeJoins + kArrears + kAddressOrder + ",WYZJ.zh_id,WYZJ.ZJ_CNY,WYZJ.ZJ_LX"}},
        {"property advance receipts",
         {kAddress +
          "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名, FWXZK.FWXZ_xz, WYZJ.ZJ_CNY "
          ",WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM,WYZJ.zj_skrq,wyzj.发票号码,wyzj.收款方式" +
          kFeeJoins + kAdvance + kAddressOrder + ",WYZJ.ZJ_CNY"}},
        {"parking arrears",
         {"SELECT 设置管理处.GYD_DH,车位申请登记表.车位编号,DJ_ID, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE" +
              kRentalJoins +
              " Where 设置管理处.GYD_DH ='BIG' and ZJ_SKRQ is null and  WYZJ.ZJ_LX  in "
              "('11','12')" +
              kArrears,
          "SELECT 设置管理处.GYD_DH,车位说明表.车位编号,cw_id, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE" +
              kOwnedJoins +
              " Where 设置管理处.GYD_DH ='BIG' and ZJ_SKRQ is null and WYZJ.ZJ_LX  in ('11','12')" +
              kArrears}},
        {"parking advance receipts",
         {"SELECT 设置管理处.GYD_DH,车位申请登记表.车位编号,DJ_ID, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE" +
              kRentalJoins + " Where 设置管理处.GYD_DH ='BIG' and WYZJ.ZJ_LX in ('11','12')" +
              kAdvance,
          "SELECT 设置管理处.GYD_DH,车位说明表.车位编号,cw_id, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE" +
              kOwnedJoins + " Where 设置管理处.GYD_DH ='BIG' and WYZJ.ZJ_LX in ('11','12')" +
              kAdvance}},
    };
    for (const Report &report : reports) {
        qsizetype rows = 0;
        for (const QString &statement : report.statements)
            rows += db.rows(statement).size();
        EXPECT_EQ(rows, scale) << report.name;
    }
}
