#include "session/sessionqueries.h"

#include "runtime/vb.h"
#include "tsql/sqlliteral.h"

namespace quorvale {

QString employeeCheckSql(const QString &userText, const QString &passwordText)
{
    return QStringLiteral("Select * From 员工档案 Where 工号 ='") + sqlQuoted(userText) +
           QStringLiteral("' and 帐号密码='") + sqlQuoted(vbrt::Trim(passwordText)) + QStringLiteral("'");
}

QString currentPostsSql(const QString &userText)
{
    return QStringLiteral(
               "Select 员工档案.姓名,职能部门类别.部门类别代号,职能部门类别.部门类别名称,"
               "岗位类别.岗位类别编号,岗位类别名称,") +
           QStringLiteral(" 职能部门new.职能部门编号 , 职能部门new.职能部门名称, "
                          "岗位信息new.岗位代号, 岗位信息new.岗位名称,") +
           QStringLiteral(" 岗位员工new.主要岗位 From 岗位员工new") +
           QStringLiteral(
               " Inner joIn 岗位信息new on 岗位员工new.岗位代号 = 岗位信息new.岗位代号") +
           QStringLiteral(" Inner joIn 职能部门new on 岗位信息new.职能部门代号 = "
                          "职能部门new.职能部门编号") +
           QStringLiteral(
               " Inner joIn 岗位类别 on 岗位信息new.岗位类别代号 = 岗位类别.岗位类别编号") +
           QStringLiteral(" Inner joIn 职能部门类别 on 职能部门new.职能部门类别代号 = "
                          "职能部门类别.部门类别代号") +
           QStringLiteral(" Inner joIn 员工档案 on 岗位员工new.员工代号 = 员工档案.工号") +
           QStringLiteral(" Where 岗位员工new.员工代号='") + sqlQuoted(userText) +
           QStringLiteral("' and 员工档案.离职日期 is null AND (岗位员工new.离岗日期 IS NULL)");
}

QString projectAuditSql(const QString &deptCode, const QString &postCode)
{
    return QStringLiteral("SELECT     ID, 类型, 部门代号, 岗位代号") +
           QStringLiteral(" From 专项审核权限表") + QStringLiteral(" WHERE     (部门代号 = N'") +
           sqlQuoted(deptCode) + QStringLiteral("') ") + QStringLiteral(" AND (岗位代号 = N'") +
           sqlQuoted(postCode) + QStringLiteral("') ") + QStringLiteral(" AND (类型 = N'项目管理')");
}

QString privilegeSql(const QString &postCode, const QString &memo)
{
    return QStringLiteral("SELECT DISTINCT 岗位权限设置.id , 岗位权限设置.组代号, "
                          "岗位权限设置.岗位代号, 岗位权限设置.授权, GroupPrivilege.FormName, "
                          "GroupPrivilege.Popedom") +
           QStringLiteral(" FROM  岗位权限设置 INNER JOIN GroupPrivilege ON 岗位权限设置.组代号 = "
                          "GroupPrivilege.GroupID") +
           QStringLiteral(" Where 授权 = 1 AND 岗位代号='") + sqlQuoted(postCode) + QStringLiteral("'") +
           QStringLiteral(" AND Memo='") + sqlQuoted(memo) + QStringLiteral("'") +
           QStringLiteral(" ORDER BY GroupPrivilege.Popedom");
}

} // namespace quorvale
