// Every statement text the windows run, run verbatim on the embedded engine
// over a fixture built from the project's schema script.
#include "db/connection.h"
#include "db/recordset.h"

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

using Rows = QList<QStringList>;

const char *const fixtureData = R"(
INSERT INTO 员工档案 (工号, 姓名, 性别, 帐号密码, 入职日期, 离职日期) VALUES
  ('001', N'张三', N'男', 'pw', '2020-01-01', NULL),
  ('002', N'李四', N'女', 'pw2', '20190301', '2023/6/30')
INSERT INTO 职能部门类别 VALUES ('L1', N'管理处类'), ('L2', N'职能部门')
INSERT INTO 职能部门new VALUES ('D1', N'东城管理部', 'L1'), ('D2', N'财务部', 'L2')
INSERT INTO 岗位类别 VALUES ('C1', N'管理岗'), ('C2', N'财务岗')
INSERT INTO 岗位信息new VALUES ('P1', N'经理', 'D1', 'C1'), ('P2', N'出纳', 'D2', 'C2'), ('P3', N'会计', 'D2', 'C2')
INSERT INTO 岗位员工new (员工代号, 岗位代号, 主要岗位, 上岗日期, 离岗日期) VALUES
  ('001', 'P1', 1, '2020-01-01', NULL), ('001', 'P2', 0, '2021-01-01', NULL),
  ('001', 'P3', 0, '2020-01-01', '2021-01-01'), ('002', 'P2', 1, '2019-03-01', NULL)
GO
INSERT INTO 岗位权限设置 (id, 组代号, 岗位代号, 授权) VALUES
  (1, 'G1', 'P1', 1), (2, 'G2', 'P1', 1), (3, 'G1', 'P2', 1), (4, 'G3', 'P1', 0)
INSERT INTO GroupPrivilege (GroupID, FormName, Popedom, Memo) VALUES
  ('G1', N'房产客户', 1, N'物业报表'), ('G1', N'车位客户', 0, N'物业报表'),
  ('G2', N'车位客户', 1, N'物业报表'), ('G2', N'房产客户', 0, N'物业报表'),
  ('G3', N'财务数据欠收表房产', 1, N'物业报表'), ('G1', N'其他', 1, N'别的系统')
INSERT INTO 专项审核权限表 VALUES (1, N'项目管理', 'D1', 'P1'), (2, N'其他', 'D2', 'P2')
GO
INSERT INTO 设置管理处 VALUES ('01', N'东城管理处', NULL, 'D1'), ('10', N'十号管理处', 0, 'D1'),
  ('2', N'商业广场', 1, 'D1'), ('03', N'西城管理处', 0, 'D2')
INSERT INTO 楼表 (L_ID, 管理处, 地址1, 字1, 地址2, 字2, 地址3, 字3, 地址4, 字4) VALUES
  (1, '01', N'北园', NULL, N'10', N'栋', NULL, NULL, NULL, NULL),
  (2, '01', N'北园', NULL, N'2', N'栋', NULL, NULL, NULL, NULL),
  (3, '01', N'安园', NULL, N'1', N'栋', N'A', N'单元', NULL, NULL),
  (4, '03', N'西苑', N'区', N'1', N'栋', NULL, NULL, NULL, NULL)
INSERT INTO FWXZK VALUES ('1', N'住宅'), ('2', N'商铺')
INSERT INTO 室表 (S_ID, L_ID, 室, 建筑面积, 房屋性质) VALUES
  (11, 1, '1001', 120.00, '1'), (12, 1, '201', 85.50, '1'), (13, 2, '101', 90, '2'),
  (14, 3, '0101', NULL, NULL), (15, 4, '101', 60, '1')
INSERT INTO 业主表 (ZH_ID, S_ID, 姓名, 移动电话, 进户日期, 开始收费日期, 说明) VALUES
  (101, 11, N'赵一', '13800000001', '2020-05-01', '2020-06-01', N'新进户'),
  (102, 11, N'钱二', '13800000002', '2018-01-01', NULL, N'已迁出'),
  (103, 12, N'孙三', NULL, '2021-07-15 10:30:00', NULL, N'新进户 '),
  (104, 14, N'李四', '13900000004', NULL, NULL, N'新进户'),
  (105, 15, N'周五', NULL, NULL, NULL, N'新进户')
GO
INSERT INTO 车库名 VALUES ('01', 'G1', N'一号车库'), ('01', 'G2', NULL), ('03', 'G1', N'西城车库')
INSERT INTO 车位说明表 (ID, 管理处, 车库编号, 车位编号, 产权类别, 计费日期, 产权人, DJ_ID) VALUES
  (1, '01', 'G1', 'A01', N'租赁', '2022-01-01', NULL, 501),
  (2, '01', 'G1', 'A02', N'产权', '2021-03-01', N'吴六', 502),
  (3, '01', 'G2', 'B01', NULL, NULL, NULL, NULL),
  (4, '03', 'G1', 'A01', N'租赁', '2022-01-01', NULL, NULL)
INSERT INTO 车位申请登记表 (登记ID, 管理处, 车库编号, 车位编号, 登记日期, 车主姓名, 结账日期) VALUES
  (501, '01', 'G1', 'A01', '2023-02-01', N'郑七', NULL),
  (502, '01', 'G1', 'A02', '2020-01-01', N'王八', '2021-02-28'),
  (503, '01', 'G9', 'Z01', '2023-01-01', N'冯九', NULL)
INSERT INTO 车位产权 VALUES (701, 2), (702, 3)
GO
INSERT INTO SetupSFXM VALUES ('01', N'物业管理费', N'日常收费', NULL), ('02', N'水费', N'日常收费', NULL),
  ('03', N'旧收费', N'日常收费', '2020-01-01'), ('11', N'停车费', N'停车收费', NULL),
  ('12', N'月租停车费', N'停车收费', NULL)
INSERT INTO WYZJ (ZJ_ID, zh_ID, DJ_ID, cw_id, FWXZ_DH, ZJ_CNY, ZJ_LX, ZJ_JE, ZJ_SKRQ, 发票号码, 收款方式) VALUES
  (1, 101, NULL, NULL, '1', '202402', '01', 85.5, NULL, NULL, NULL),
  (2, 101, NULL, NULL, '1', '202403', '01', 85.5, '2024-03-31', NULL, NULL),
  (3, 101, NULL, NULL, '1', '202403', '02', 12, '2024/04/01 09:00', NULL, NULL),
  (4, 101, NULL, NULL, '1', '202404', '01', 85.5, NULL, NULL, NULL),
  (5, 101, NULL, NULL, '1', '202401', '03', 10, NULL, NULL, NULL),
  (6, 102, NULL, NULL, '1', '202401', '01', 85.5, NULL, NULL, NULL),
  (7, 104, NULL, NULL, '9', '202401', '01', NULL, NULL, NULL, NULL),
  (8, 101, NULL, NULL, '1', '202405', '01', 85.5, '2024-03-15', 'F001', N'现金'),
  (9, 101, NULL, NULL, '1', '202406', '01', 85.5, '2024-04-02', 'F002', N'转账'),
  (10, 105, NULL, NULL, '1', '202401', '01', 60, NULL, NULL, NULL),
  (21, NULL, 501, NULL, NULL, '202402', '11', 100, NULL, NULL, NULL),
  (22, NULL, 501, NULL, NULL, '202403', '12', 150, '2024-04-05', NULL, NULL),
  (23, NULL, 503, NULL, NULL, '202402', '11', 100, NULL, NULL, NULL),
  (24, NULL, NULL, 701, NULL, '202401', '11', 120, NULL, NULL, NULL),
  (25, NULL, NULL, 701, NULL, '202405', '11', 120, '2024-03-20', 'P001', N'现金'),
  (26, NULL, 501, 702, NULL, '202403', '11', NULL, NULL, NULL, NULL),
  (27, NULL, 501, NULL, NULL, '202406', '12', 150, '2024-03-10', 'P002', N'微信')
)";

class Statements : public ::testing::Test {
  protected:
    static void SetUpTestSuite()
    {
        s_dir = new QTemporaryDir;
        s_db = new ConnectionPtr(std::make_shared<Connection>());
        Connection &c = **s_db;
        c.ConnectionString =
            Connection::embeddedConnectionString(s_dir->filePath(QStringLiteral("wygl.db")));
        c.CreateIfMissing = true;
        c.Open();
        QFile schema(qEnvironmentVariable("QUORVALE_SOURCE_DIR") +
                     QStringLiteral("/sql/schema.sql"));
        ASSERT_TRUE(schema.open(QIODevice::ReadOnly))
            << "QUORVALE_SOURCE_DIR must name the source tree";
        c.Execute(QString::fromUtf8(schema.readAll()));
        c.Execute(QString::fromUtf8(fixtureData));
    }
    static void TearDownTestSuite()
    {
        delete s_db;
        delete s_dir;
    }

    static Rows query(const QString &sql)
    {
        Recordset rs;
        rs.Open(sql, *s_db, 0, 1, -1);
        Rows out;
        while (!rs.eof()) {
            QStringList row;
            for (int i = 0; i < rs.fieldCount(); ++i)
                row << rs.Fields(i).text();
            out << row;
            rs.MoveNext();
        }
        return out;
    }
    static Rows sorted(Rows rows)
    {
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    static QStringList names(const QString &sql)
    {
        Recordset rs;
        rs.Open(sql, *s_db);
        QStringList out;
        for (int i = 0; i < rs.fieldCount(); ++i)
            out << rs.Fields(i).name();
        return out;
    }

    static QTemporaryDir *s_dir;
    static ConnectionPtr *s_db;
};

QTemporaryDir *Statements::s_dir = nullptr;
ConnectionPtr *Statements::s_db = nullptr;

QString employeeCheck(const QString &user, const QString &password)
{
    return "Select * From 员工档案 Where 工号 ='" + user + "' and 帐号密码='" + password + "'";
}

QString postQuery(const QString &user)
{
    return QStringLiteral("Select "
                          "员工档案.姓名,职能部门类别.部门类别代号,职能部门类别.部门类别名称,"
                          "岗位类别.岗位类别编号,岗位类别名称,") +
           " 职能部门new.职能部门编号 , 职能部门new.职能部门名称, 岗位信息new.岗位代号, "
           "岗位信息new.岗位名称," +
           " 岗位员工new.主要岗位 From 岗位员工new" +
           " Inner joIn 岗位信息new on 岗位员工new.岗位代号 = 岗位信息new.岗位代号" +
           " Inner joIn 职能部门new on 岗位信息new.职能部门代号 = 职能部门new.职能部门编号" +
           " Inner joIn 岗位类别 on 岗位信息new.岗位类别代号 = 岗位类别.岗位类别编号" +
           " Inner joIn 职能部门类别 on 职能部门new.职能部门类别代号 = 职能部门类别.部门类别代号" +
           " Inner joIn 员工档案 on 岗位员工new.员工代号 = 员工档案.工号" +
           " Where 岗位员工new.员工代号='" + user +
           "' and 员工档案.离职日期 is null AND (岗位员工new.离岗日期 IS NULL)";
}

QString privilegeQuery(const QString &post, const QString &memo)
{
    return QStringLiteral("SELECT DISTINCT 岗位权限设置.id , 岗位权限设置.组代号, "
                          "岗位权限设置.岗位代号, 岗位权限设置.授权, "
                          "GroupPrivilege.FormName, GroupPrivilege.Popedom") +
           " FROM  岗位权限设置 INNER JOIN GroupPrivilege ON 岗位权限设置.组代号 = "
           "GroupPrivilege.GroupID" +
           " Where 授权 = 1 AND 岗位代号='" + post + "'" + " AND Memo='" + memo + "'" +
           " ORDER BY GroupPrivilege.Popedom";
}

QString auditQuery(const QString &dept, const QString &post)
{
    return QStringLiteral("SELECT     ID, 类型, 部门代号, 岗位代号") + " From 专项审核权限表" +
           " WHERE     (部门代号 = N'" + dept + "') " + " AND (岗位代号 = N'" + post + "') " +
           " AND (类型 = N'项目管理')";
}

// The address of a building, with the separator each report writes between the CASE terms.
QString addressExpression()
{
    return QStringLiteral(
               "Select Case When 楼表.地址1 Is Not Null Then 楼表.地址1 Else '' End + ") +
           " Case When 楼表.字1 Is Not Null Then 楼表.字1 Else '' End + " +
           " Case When 楼表.地址2 Is Not Null Then 楼表.地址2 Else '' End + " +
           " Case When 楼表.字2 Is Not Null Then 楼表.字2 Else '' End + " +
           " Case When 楼表.地址3 Is Not Null Then 楼表.地址3 Else '' End + " +
           " Case When 楼表.字3 Is Not Null Then 楼表.字3 Else '' End + " +
           " Case When 楼表.地址4 Is Not Null Then 楼表.地址4 Else '' End + " +
           " Case When 楼表.字4 Is Not Null Then 楼表.字4 Else '' End AS DZ,";
}

const QString addressOrder =
    QStringLiteral(" ORDER BY  LEN(楼表.地址1), 楼表.地址1, LEN(楼表.地址2), 楼表.地址2, "
                   "LEN(楼表.地址3), 楼表.地址3, LEN(楼表.地址4), "
                   "楼表.地址4,len(室表.室),室表.室");

QString propertyCustomerQuery(const QString &office)
{
    return addressExpression() +
           "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,业主表.移动电话,室表."
           "建筑面积, "
           "FWXZK.FWXZ_xz,业主表.进户日期,业主表.开始收费日期" +
           " FROM 楼表 INNER JOIN" + " 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN" +
           " 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 left JOIN" +
           " 业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' left JOIN" +
           " FWXZK ON FWXZK.FWXZ_dh = 室表.房屋性质 " + " Where 设置管理处.GYD_DH ='" + office +
           "' " + addressOrder;
}

QString parkingCustomerQuery(const QString &office)
{
    return QStringLiteral("SELECT "
                          "设置管理处.GYD_DH,设置管理处.GYD_Name,车库名.车库名,车位说明表.车库编号,"
                          "车位说明表.车位编号,"
                          "车位说明表.产权类别,车位说明表.计费日期,车位申请登记表.登记日期,"
                          "车位说明表.产权人,车位申请登记表.车主姓名") +
           " FROM 车库名 INNER JOIN" +
           " 车位说明表 ON 车位说明表.车库编号 = 车库名.车库编号 and 车位说明表.管理处 = "
           "车库名.管理处 INNER JOIN" +
           " 设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 left join " +
           " 车位申请登记表 ON 车位说明表.车库编号 = 车位申请登记表.车库编号 and 车位说明表.管理处 "
           "= 车位申请登记表.管理处 and "
           "车位说明表.车位编号 = 车位申请登记表.车位编号 and 车位说明表.DJ_ID = "
           "车位申请登记表.登记ID and 车位申请登记表.结账日期 is null" +
           " Where 车库名.管理处 ='" + office + "' " +
           " order by 车位说明表.车库编号,车位说明表.车位编号";
}

// The receivable-month and receipt-date choices of the finance windows.
struct Period {
    bool oneMonth = true;
    QString month, firstMonth, lastMonth;
    bool cutOff = true;
    QString cutOffDate, firstDate, lastDate;
};

QString propertyArrearsQuery(const QString &office, const QString &fees, const Period &p)
{
    QString sql = addressExpression() +
                  "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,FWXZK.FWXZ_xz, "
                  "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM" +
                  " FROM 楼表 INNER JOIN" + " 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN" +
                  " 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 INNER JOIN" +
                  " 业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' INNER JOIN" +
                  " WYZJ on  WYZJ.zh_ID = 业主表.ZH_ID INNER JOIN" +
                  " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH LEFT JOIN" +
                  " FWXZK on  WYZJ.FWXZ_DH = FWXZK.FWXZ_dh " + " Where 设置管理处.GYD_DH ='" +
                  office + "' and WYZJ.ZJ_LX  in (" + fees + ")";
    if (p.oneMonth)
        sql += " and  ((WYZJ.ZJ_SKRQ Is Null) OR (ZJ_SKRQ>'" + p.cutOffDate + "')) AND  ZJ_Cny<='" +
               p.month + "'";
    else
        sql += " and  ((WYZJ.ZJ_SKRQ Is Null) OR (ZJ_SKRQ>'" + p.cutOffDate +
               "')) AND  (ZJ_Cny>='" + p.firstMonth + "' AND ZJ_CNY<='" + p.lastMonth + "')";
    return sql + addressOrder + ",WYZJ.zh_id,WYZJ.ZJ_CNY,WYZJ.ZJ_LX";
}

QString parkingArrearsPeriod(const Period &p)
{
    if (p.oneMonth)
        return " and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'" + p.cutOffDate + "')) AND  ZJ_Cny<='" +
               p.month + "'";
    return " and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'" + p.cutOffDate + "')) AND  (ZJ_Cny>='" +
           p.firstMonth + "' AND ZJ_CNY<='" + p.lastMonth + "')";
}

QString rentedArrearsQuery(const QString &office, const QString &fees, const Period &p)
{
    return QStringLiteral(
               "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位申请登记表.车库编号, "
               "车库名.车库名, "
               "车位申请登记表.车位编号,DJ_ID, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM") +
           " FROM WYZJ  INNER JOIN   车位申请登记表  ON WYZJ.DJ_ID=车位申请登记表.登记ID INNER "
           "JOIN " +
           " 车库名 ON 车位申请登记表.车库编号 = 车库名.车库编号 and 车位申请登记表.管理处 = "
           "车库名.管理处 INNER JOIN" +
           " 设置管理处 ON 设置管理处.GYD_DH = 车位申请登记表.管理处 INNER join " +
           " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH " + " Where 设置管理处.GYD_DH ='" + office +
           "' and ZJ_SKRQ is null and  WYZJ.ZJ_LX  in (" + fees + ")" + parkingArrearsPeriod(p) +
           " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID "
           ",WYZJ.ZJ_CNY,WYZJ.ZJ_LX";
}

QString ownedArrearsQuery(const QString &office, const QString &fees, const Period &p)
{
    return QStringLiteral(
               "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位说明表.车库编号, 车库名.车库名, "
               "车位说明表.车位编号,cw_id, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM") +
           " FROM WYZJ  INNER JOIN 车位产权 ON WYZJ.cw_id=车位产权.ID INNER JOIN" +
           " 车位说明表 ON 车位产权.车位ID = 车位说明表.ID INNER JOIN" +
           " 车库名 ON 车位说明表.车库编号 = 车库名.车库编号 and 车位说明表.管理处 = 车库名.管理处 "
           "INNER JOIN" +
           " 设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 INNER join " +
           " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH " + " Where 设置管理处.GYD_DH ='" + office +
           "' and ZJ_SKRQ is null and WYZJ.ZJ_LX  in (" + fees + ")" + parkingArrearsPeriod(p) +
           " ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id "
           ",WYZJ.ZJ_CNY,WYZJ.ZJ_LX";
}

QString advanceConditions(const QString &office, const QString &fees, const Period &p)
{
    QString sql = " Where 设置管理处.GYD_DH ='" + office + "' and WYZJ.ZJ_LX in (" + fees + ")";
    if (p.cutOff)
        sql += " and (WYZJ.ZJ_SKRQ Is Not Null AND WYZJ.ZJ_SKRQ <='" + p.cutOffDate + "')";
    else
        sql += " and (WYZJ.ZJ_SKRQ Is Not Null AND (ZJ_SKRQ Between '" + p.firstDate + "' and '" +
               p.lastDate + "'))";
    if (p.oneMonth)
        sql += " AND (WYZJ.ZJ_Cny>'" + p.month + "')";
    else
        sql += " AND (WYZJ.ZJ_Cny>='" + p.firstMonth + "' AND WYZJ.ZJ_CNY<='" + p.lastMonth + "')";
    return sql;
}

QString rentedAdvanceQuery(const QString &office, const QString &fees, const Period &p)
{
    return QStringLiteral("SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位申请登记表.车库编号, "
                          "车库名.车库名, "
                          "车位申请登记表.车位编号,DJ_ID, WYZJ.ZJ_CNY "
                          ",WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM,WYZJ.zj_skrq,"
                          "wyzj.发票号码,wyzj.收款方式") +
           " FROM WYZJ  INNER JOIN   车位申请登记表  ON WYZJ.DJ_ID=车位申请登记表.登记ID INNER "
           "JOIN " +
           " 车库名 ON 车位申请登记表.车库编号 = 车库名.车库编号 and 车位申请登记表.管理处 = "
           "车库名.管理处 INNER JOIN" +
           " 设置管理处 ON 设置管理处.GYD_DH = 车位申请登记表.管理处 INNER join " +
           " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH " + advanceConditions(office, fees, p) +
           " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID ,WYZJ.ZJ_CNY";
}

QString ownedAdvanceQuery(const QString &office, const QString &fees, const Period &p)
{
    return QStringLiteral(
               "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位说明表.车库编号, 车库名.车库名, "
               "车位说明表.车位编号,cw_id, WYZJ.ZJ_CNY "
               ",WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM,WYZJ.zj_skrq,"
               "wyzj.发票号码,wyzj.收款方式") +
           " FROM WYZJ  INNER JOIN 车位产权 ON WYZJ.cw_id=车位产权.ID INNER JOIN" +
           " 车位说明表 ON 车位产权.车位ID = 车位说明表.ID INNER JOIN" +
           " 车库名 ON 车位说明表.车库编号 = 车库名.车库编号 and 车位说明表.管理处 = 车库名.管理处 "
           "INNER JOIN" +
           " 设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 INNER join " +
           " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH " + advanceConditions(office, fees, p) +
           " ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id ,WYZJ.ZJ_CNY";
}

QString propertyAdvanceQuery(const QString &office, const QString &fees, const Period &p)
{
    return addressExpression() +
           "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名, FWXZK.FWXZ_xz, WYZJ.ZJ_CNY "
           ",WYZJ.ZJ_JE,WYZJ.ZJ_LX,"
           "SETUPSFXM.XM,WYZJ.zj_skrq,wyzj.发票号码,wyzj.收款方式" +
           " FROM 楼表 INNER JOIN" + " 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN" +
           " 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 INNER JOIN" +
           " 业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' INNER JOIN" +
           " WYZJ on  WYZJ.zh_ID = 业主表.ZH_ID INNER JOIN" +
           " SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH LEFT JOIN" +
           " FWXZK on  WYZJ.FWXZ_DH = FWXZK.FWXZ_dh " + advanceConditions(office, fees, p) +
           addressOrder + ",WYZJ.ZJ_CNY";
}

// The fee-code list a finance window builds from its fee-item query.
QString feeCodeList(const Rows &items)
{
    QString list;
    for (const QStringList &item : items)
        list += ",'" + item.at(0) + "'";
    return list.mid(1);
}

} // namespace

TEST_F(Statements, SignInEmployeeCheck)
{
    EXPECT_EQ(query(employeeCheck("001", "pw")),
              (Rows{{"001", "张三", "男", "pw", "2020-01-01", ""}}));
    // SQL Server's default collation: case and trailing blanks do not count.
    EXPECT_EQ(query(employeeCheck("001 ", "PW")).size(), 1);
    EXPECT_TRUE(query(employeeCheck("001", "pw2")).isEmpty());
    EXPECT_TRUE(query(employeeCheck("003", "")).isEmpty());
    EXPECT_EQ(names(employeeCheck("001", "pw")),
              (QStringList{"工号", "姓名", "性别", "帐号密码", "入职日期", "离职日期"}));
}

TEST_F(Statements, SignInPostsOfCurrentEmployee)
{
    const QString sql = postQuery("001");
    EXPECT_EQ(
        sorted(query(sql)),
        (Rows{{"张三", "L1", "管理处类", "C1", "管理岗", "D1", "东城管理部", "P1", "经理", "1"},
              {"张三", "L2", "职能部门", "C2", "财务岗", "D2", "财务部", "P2", "出纳", "0"}}));
    EXPECT_EQ(names(sql).at(4), QStringLiteral("岗位类别名称"));
    // An employee who has left has no posts, even with a current one.
    EXPECT_TRUE(query(postQuery("002")).isEmpty());
}

TEST_F(Statements, PostPrivilegesDistinctOrderedByPopedom)
{
    const Rows rows = query(privilegeQuery("P1", "物业报表"));
    ASSERT_EQ(rows.size(), 4);
    QStringList popedom;
    for (const QStringList &r : rows)
        popedom << r.at(5);
    EXPECT_EQ(popedom, (QStringList{"0", "0", "1", "1"}));
    EXPECT_EQ(sorted(rows), (Rows{{"1", "G1", "P1", "1", "房产客户", "1"},
                                  {"1", "G1", "P1", "1", "车位客户", "0"},
                                  {"2", "G2", "P1", "1", "房产客户", "0"},
                                  {"2", "G2", "P1", "1", "车位客户", "1"}}));
    EXPECT_EQ(query(privilegeQuery("P2", "别的系统")), (Rows{{"3", "G1", "P2", "1", "其他", "1"}}));
    EXPECT_TRUE(query(privilegeQuery("P9", "物业报表")).isEmpty());
}

TEST_F(Statements, ProjectAuditRight)
{
    EXPECT_EQ(query(auditQuery("D1", "P1")), (Rows{{"1", "项目管理", "D1", "P1"}}));
    EXPECT_TRUE(query(auditQuery("D2", "P2")).isEmpty());
    EXPECT_TRUE(query(auditQuery("D1", "P2")).isEmpty());
}

TEST_F(Statements, OfficeListsSortByCodeLengthFirst)
{
    const Rows department{
        {"2", "商业广场", "1"}, {"01", "东城管理处", ""}, {"10", "十号管理处", "0"}};
    const Rows all{{"2", "商业广场", "1"},
                   {"01", "东城管理处", ""},
                   {"03", "西城管理处", "0"},
                   {"10", "十号管理处", "0"}};
    const QString dept = QStringLiteral("D1");
    EXPECT_EQ(query("Select  GYD_DH,GYD_Name,商用物业  From 设置管理处  Where 对应部门代号='" +
                    dept + "' Order By len(GYD_dh),GYD_DH"),
              department);
    EXPECT_EQ(query("Select  GYD_DH,GYD_Name,商用物业  From 设置管理处  Where 对应部门代号='" +
                    dept + "'  Order By len(GYD_dh),GYD_DH"),
              department);
    EXPECT_EQ(query("Select  GYD_DH,GYD_Name,商用物业  From 设置管理处  Where 对应部门代号='" +
                    dept + "'   Order By len(GYD_dh),GYD_DH"),
              department);
    EXPECT_EQ(query(QStringLiteral(
                  "Select GYD_DH,GYD_Name,商用物业  From 设置管理处 Order By len(GYD_dh),GYD_DH")),
              all);
    EXPECT_EQ(query(QStringLiteral(
                  "Select GYD_DH,GYD_Name,商用物业  From 设置管理处  Order By len(GYD_dh),GYD_DH")),
              all);
}

TEST_F(Statements, FeeItemLists)
{
    const Rows daily = query(QStringLiteral("SELECT * ") + " FROM SetupSFXM" +
                             " Where 收费类别='日常收费' and 终止日期 Is Null" + " ORDER BY DH");
    EXPECT_EQ(daily, (Rows{{"01", "物业管理费", "日常收费", ""}, {"02", "水费", "日常收费", ""}}));
    const Rows parking =
        query(QStringLiteral("SELECT *  ") +
              " FROM SetupSFXM  where 收费类别= '停车收费' AND 终止日期 Is Null" + " ORDER BY DH");
    EXPECT_EQ(parking,
              (Rows{{"11", "停车费", "停车收费", ""}, {"12", "月租停车费", "停车收费", ""}}));
    EXPECT_EQ(feeCodeList(parking), QStringLiteral("'11','12'"));
}

TEST_F(Statements, PropertyCustomers)
{
    EXPECT_EQ(
        query(propertyCustomerQuery("01")),
        (Rows{{"安园1栋A单元", "01", "东城管理处", "0101", "李四", "13900000004", "", "", "", ""},
              {"北园2栋", "01", "东城管理处", "101", "", "", "90", "商铺", "", ""},
              {"北园10栋", "01", "东城管理处", "201", "孙三", "", "85.5", "住宅",
               "2021-07-15 10:30:00", ""},
              {"北园10栋", "01", "东城管理处", "1001", "赵一", "13800000001", "120", "住宅",
               "2020-05-01", "2020-06-01"}}));
    EXPECT_EQ(query(propertyCustomerQuery("03")),
              (Rows{{"西苑区1栋", "03", "西城管理处", "101", "周五", "", "60", "住宅", "", ""}}));
    EXPECT_TRUE(query(propertyCustomerQuery("99")).isEmpty());
}

TEST_F(Statements, ParkingCustomers)
{
    EXPECT_EQ(
        query(parkingCustomerQuery("01")),
        (Rows{{"01", "东城管理处", "一号车库", "G1", "A01", "租赁", "2022-01-01", "2023-02-01", "",
               "郑七"},
              {"01", "东城管理处", "一号车库", "G1", "A02", "产权", "2021-03-01", "", "吴六", ""},
              {"01", "东城管理处", "", "G2", "B01", "", "", "", "", ""}}));
}

TEST_F(Statements, PropertyArrearsBothMonthModes)
{
    const QString fees = QStringLiteral("'01','02'");
    Period oneMonth;
    oneMonth.month = QStringLiteral("202403");
    oneMonth.cutOffDate = QStringLiteral("2024/03/31");
    const Rows expectedOne{
        {"安园1栋A单元", "01", "东城管理处", "0101", "李四", "", "202401", "", "01", "物业管理费"},
        {"北园10栋", "01", "东城管理处", "1001", "赵一", "住宅", "202402", "85.5", "01",
         "物业管理费"},
        {"北园10栋", "01", "东城管理处", "1001", "赵一", "住宅", "202403", "12", "02", "水费"}};
    EXPECT_EQ(query(propertyArrearsQuery("01", fees, oneMonth)), expectedOne);
    // The calendar writes the cut-off with dashes.
    oneMonth.cutOffDate = QStringLiteral("2024-03-31");
    EXPECT_EQ(query(propertyArrearsQuery("01", fees, oneMonth)), expectedOne);

    Period range;
    range.oneMonth = false;
    range.firstMonth = QStringLiteral("202403");
    range.lastMonth = QStringLiteral("202404");
    range.cutOffDate = QStringLiteral("2024/3/31");
    EXPECT_EQ(query(propertyArrearsQuery("01", fees, range)),
              (Rows{{"北园10栋", "01", "东城管理处", "1001", "赵一", "住宅", "202403", "12", "02",
                     "水费"},
                    {"北园10栋", "01", "东城管理处", "1001", "赵一", "住宅", "202404", "85.5", "01",
                     "物业管理费"}}));
}

TEST_F(Statements, ParkingArrearsRentedThenOwned)
{
    const QString fees = QStringLiteral("'11','12'");
    Period p;
    p.month = QStringLiteral("202403");
    p.cutOffDate = QStringLiteral("2024/03/31");
    EXPECT_EQ(
        query(rentedArrearsQuery("01", fees, p)),
        (Rows{{"01", "东城管理处", "G1", "一号车库", "A01", "501", "202402", "100", "11", "停车费"},
              {"01", "东城管理处", "G1", "一号车库", "A01", "501", "202403", "", "11", "停车费"}}));
    EXPECT_EQ(
        query(ownedArrearsQuery("01", fees, p)),
        (Rows{{"01", "东城管理处", "G1", "一号车库", "A02", "701", "202401", "120", "11", "停车费"},
              {"01", "东城管理处", "G2", "", "B01", "702", "202403", "", "11", "停车费"}}));
    p.oneMonth = false;
    p.firstMonth = QStringLiteral("202403");
    p.lastMonth = QStringLiteral("202403");
    EXPECT_EQ(query(rentedArrearsQuery("01", fees, p)).size(), 1);
    EXPECT_EQ(query(ownedArrearsQuery("01", fees, p)).size(), 1);
}

TEST_F(Statements, ParkingAdvanceReceiptsAllModes)
{
    const QString fees = QStringLiteral("'11','12'");
    Period p;
    p.month = QStringLiteral("202403");
    p.cutOffDate = QStringLiteral("2024-03-31");
    EXPECT_EQ(query(rentedAdvanceQuery("01", fees, p)),
              (Rows{{"01", "东城管理处", "G1", "一号车库", "A01", "501", "202406", "150", "12",
                     "月租停车费", "2024-03-10", "P002", "微信"}}));
    EXPECT_EQ(query(ownedAdvanceQuery("01", fees, p)),
              (Rows{{"01", "东城管理处", "G1", "一号车库", "A02", "701", "202405", "120", "11",
                     "停车费", "2024-03-20", "P001", "现金"}}));
    p.oneMonth = false;
    p.firstMonth = QStringLiteral("202403");
    p.lastMonth = QStringLiteral("202406");
    p.cutOff = false;
    p.firstDate = QStringLiteral("2024-03-01");
    p.lastDate = QStringLiteral("2024-04-30");
    Rows rented = query(rentedAdvanceQuery("01", fees, p));
    ASSERT_EQ(rented.size(), 2);
    EXPECT_EQ(rented.at(0).mid(6, 5),
              (QStringList{"202403", "150", "12", "月租停车费", "2024-04-05"}));
    EXPECT_EQ(rented.at(1).at(6), QStringLiteral("202406"));
    EXPECT_EQ(query(ownedAdvanceQuery("01", fees, p)).size(), 1);
    // A reversed receipt range runs and finds nothing.
    std::swap(p.firstDate, p.lastDate);
    EXPECT_TRUE(query(rentedAdvanceQuery("01", fees, p)).isEmpty());
}

TEST_F(Statements, PropertyAdvanceReceiptsAllModes)
{
    const QString fees = QStringLiteral("'01','02'");
    Period p;
    p.month = QStringLiteral("202403");
    p.cutOffDate = QStringLiteral("2024-03-31");
    EXPECT_EQ(query(propertyAdvanceQuery("01", fees, p)),
              (Rows{{"北园10栋", "01", "东城管理处", "1001", "赵一", "住宅", "202405", "85.5", "01",
                     "物业管理费", "2024-03-15", "F001", "现金"}}));
    p.oneMonth = false;
    p.firstMonth = QStringLiteral("202404");
    p.lastMonth = QStringLiteral("202406");
    p.cutOff = false;
    p.firstDate = QStringLiteral("2024-03-01");
    p.lastDate = QStringLiteral("2024-04-30");
    const Rows rows = query(propertyAdvanceQuery("01", fees, p));
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows.at(0).at(6), QStringLiteral("202405"));
    EXPECT_EQ(rows.at(1).mid(6),
              (QStringList{"202406", "85.5", "01", "物业管理费", "2024-04-02", "F002", "转账"}));
    EXPECT_EQ(names(propertyAdvanceQuery("01", fees, p)).mid(0, 2), (QStringList{"DZ", "GYD_DH"}));
}
