#include "db/recordset.h"
#include "dbtools/databasefile.h"
#include "dbtools/embeddeddatabase.h"
#include "dbtools/schemascript.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

// Every table and every column the windows' statements name.
const QList<std::pair<QString, QString>> kTables = {
    {"员工档案", "工号,姓名,帐号密码,离职日期"},
    {"岗位员工new", "员工代号,岗位代号,主要岗位,离岗日期"},
    {"岗位信息new", "岗位代号,岗位名称,职能部门代号,岗位类别代号"},
    {"职能部门new", "职能部门编号,职能部门名称,职能部门类别代号"},
    {"岗位类别", "岗位类别编号,岗位类别名称"},
    {"职能部门类别", "部门类别代号,部门类别名称"},
    {"岗位权限设置", "id,组代号,岗位代号,授权"},
    {"GroupPrivilege", "GroupID,FormName,Popedom,Memo"},
    {"专项审核权限表", "ID,类型,部门代号,岗位代号"},
    {"设置管理处", "GYD_DH,GYD_Name,商用物业,对应部门代号"},
    {"楼表", "L_ID,管理处,地址1,地址2,地址3,地址4,字1,字2,字3,字4"},
    {"室表", "L_ID,S_ID,室,建筑面积,房屋性质"},
    {"业主表", "S_ID,ZH_ID,姓名,移动电话,进户日期,开始收费日期,说明"},
    {"FWXZK", "FWXZ_dh,FWXZ_xz"},
    {"车库名", "车库编号,车库名,管理处"},
    {"车位说明表", "ID,车库编号,车位编号,管理处,产权类别,计费日期,产权人,DJ_ID"},
    {"车位申请登记表", "登记ID,车库编号,车位编号,管理处,登记日期,车主姓名,结账日期"},
    {"车位产权", "ID,车位ID"},
    {"SetupSFXM", "DH,XM,收费类别,终止日期"},
    {"WYZJ", "zh_ID,DJ_ID,cw_id,FWXZ_DH,ZJ_CNY,ZJ_JE,ZJ_LX,ZJ_SKRQ,发票号码,收款方式"},
};

} // namespace

TEST(CreateDb, EmptySchemaHasEveryTableAndColumnTheStatementsName)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("empty.db");
    createDatabaseFile(path, {});
    ConnectionPtr connection = openEmbeddedDatabase(path);
    for (const auto &[table, columns] : kTables) {
        SCOPED_TRACE(table.toStdString());
        Recordset rs;
        rs.Open("Select " + columns + " From " + table, connection);
        EXPECT_TRUE(rs.eof());
        EXPECT_EQ(rs.fieldCount(), columns.count(',') + 1);
    }
}

TEST(SchemaScript, SplitsAtGoLinesOnly)
{
    const QString script =
        "-- header\nCREATE TABLE a (GOAL int)\ngo\n\n  GO  \r\n"
        "CREATE INDEX ix ON a (GOAL)\n-- trailing comment\nGO\n-- only a comment\n";
    EXPECT_EQ(scriptBatches(script),
              (QStringList{"CREATE TABLE a (GOAL int)", "CREATE INDEX ix ON a (GOAL)"}));
}
