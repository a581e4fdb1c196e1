#include "db/configuredconnection.h"
#include "runtime/runtimeerror.h"
#include "session/sessionqueries.h"

#include <gtest/gtest.h>

using namespace quorvale;

// The designed texts: values spliced as they stand, but for the password's
// trim and the doubled quotes in SQL literals.
TEST(SessionStatements, TextsAreTheDesignedOnes)
{
    const std::pair<QString, const char *> cases[] = {
        {buildConnectionString("srv01\\SQL", "wygl", "sa", "p w"),
         "Provider=SQLOLEDB.1;Password=p w;Persist Security Info=False;User ID=sa;"
         "Initial Catalog='wygl';Data Source='srv01\\SQL'"},
        {employeeCheckSql(" a'b ", "  ' or '1'='1  "),
         "Select * From 员工档案 Where 工号 =' a''b ' and 帐号密码=''' or ''1''=''1'"},
        {currentPostsSql("1001 "),
         "Select 员工档案.姓名,职能部门类别.部门类别代号,职能部门类别.部门类别名称,"
         "岗位类别.岗位类别编号,岗位类别名称, 职能部门new.职能部门编号 , "
         "职能部门new.职能部门名称, 岗位信息new.岗位代号, 岗位信息new.岗位名称, "
         "岗位员工new.主要岗位 From 岗位员工new Inner joIn 岗位信息new on "
         "岗位员工new.岗位代号 = 岗位信息new.岗位代号 Inner joIn 职能部门new on "
         "岗位信息new.职能部门代号 = 职能部门new.职能部门编号 Inner joIn 岗位类别 on "
         "岗位信息new.岗位类别代号 = 岗位类别.岗位类别编号 Inner joIn 职能部门类别 on "
         "职能部门new.职能部门类别代号 = 职能部门类别.部门类别代号 Inner joIn 员工档案 on "
         "岗位员工new.员工代号 = 员工档案.工号 Where 岗位员工new.员工代号='1001 ' and "
         "员工档案.离职日期 is null AND (岗位员工new.离岗日期 IS NULL)"},
        {projectAuditSql("B01", "G'1"),
         "SELECT     ID, 类型, 部门代号, 岗位代号 From 专项审核权限表 WHERE     (部门代号 = "
         "N'B01')  AND (岗位代号 = N'G''1')  AND (类型 = N'项目管理')"},
        {privilegeSql("G01", "报表"),
         "SELECT DISTINCT 岗位权限设置.id , 岗位权限设置.组代号, 岗位权限设置.岗位代号, "
         "岗位权限设置.授权, GroupPrivilege.FormName, GroupPrivilege.Popedom FROM  岗位权限设置 "
         "INNER JOIN GroupPrivilege ON 岗位权限设置.组代号 = GroupPrivilege.GroupID Where "
         "授权 = 1 AND 岗位代号='G01' AND Memo='报表' ORDER BY GroupPrivilege.Popedom"},
    };
    for (const auto &[actual, expected] : cases)
        EXPECT_EQ(actual.toStdString(), expected);
}
