#include "session/signin.h"

#include "db/recordset.h"
#include "runtime/msgboxstyle.h"
#include "session/privileges.h"
#include "session/session.h"
#include "session/sessionqueries.h"

namespace quorvale {

namespace {
const QString superUserName = QStringLiteral("system");
const QString superUserPassword = QStringLiteral("velKo");
const QString superUserNo = QStringLiteral("超级用户");

PostChoice postFromRow(const Recordset &rs, const QString &userNo)
{
    PostChoice c;
    c.userNo = userNo;
    c.userName = rs.Fields(QStringLiteral("姓名")).text();
    c.deptCode = rs.Fields(QStringLiteral("职能部门编号")).text();
    c.deptName = rs.Fields(QStringLiteral("职能部门名称")).text();
    c.postCode = rs.Fields(QStringLiteral("岗位代号")).text();
    c.postName = rs.Fields(QStringLiteral("岗位名称")).text();
    c.deptClassCode = rs.Fields(QStringLiteral("部门类别代号")).text();
    c.deptClassName = rs.Fields(QStringLiteral("部门类别名称")).text();
    c.postClassCode = rs.Fields(QStringLiteral("岗位类别编号")).text();
    c.postClassName = rs.Fields(QStringLiteral("岗位类别名称")).text();
    return c;
}

SignInResult refused(const QString &message, int style)
{
    SignInResult r;
    r.kind = SignInResult::Kind::Refused;
    r.refusal = {message, style};
    return r;
}
} // namespace

bool checkTypedCredentials(const QString &userText, const QString &passwordText,
                           SignInRefusal &refusal)
{
    if (userText.isEmpty()) {
        refusal = {QStringLiteral("用户名不能为空!"), vb::Information};
        return false;
    }
    if (passwordText.isEmpty()) {
        refusal = {QStringLiteral("密码不能为空!"), vb::Information};
        return false;
    }
    return true;
}

SignInResult verifyCredentials(Session &session, const QString &userText,
                               const QString &passwordText)
{
    if (userText == superUserName && passwordText == superUserPassword) {
        session.CurUserNo = superUserNo;
        SignInResult r;
        r.kind = SignInResult::Kind::SuperUser;
        return r;
    }
    {
        Recordset employee;
        employee.Open(employeeCheckSql(userText, passwordText), session.DbConn, 0, 1, -1);
        if (employee.eof())
            return refused(QStringLiteral("用户名或密码不正确,请重新输入!"), vb::Information);
    }
    Recordset posts;
    posts.Open(currentPostsSql(userText), session.DbConn, 0, 1, -1);
    if (posts.eof())
        return refused(QStringLiteral("对不起，您没有岗位，请选择系统管理员"), vb::OKOnly);

    SignInResult r;
    r.kind = SignInResult::Kind::Posts;
    for (; !posts.eof(); posts.MoveNext()) {
        const bool principal = posts.Fields(QStringLiteral("主要岗位")).toBool();
        r.listTexts << posts.Fields(QStringLiteral("职能部门名称")).text() + QStringLiteral(" ") +
                           posts.Fields(QStringLiteral("岗位名称")).text() + QStringLiteral("(") +
                           (principal ? QStringLiteral("主要") : QStringLiteral("兼职")) +
                           QStringLiteral(")");
        r.posts.append(postFromRow(posts, userText));
    }
    return r;
}

std::shared_ptr<const Session> signIn(Session session)
{
    LoadProjectAuditRight(session);
    if (!session.DbConn)
        session.DbConn = std::make_shared<Connection>();
    return std::make_shared<const Session>(std::move(session));
}

} // namespace quorvale
