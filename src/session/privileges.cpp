#include "session/privileges.h"

#include "db/recordset.h"
#include "session/session.h"
#include "session/sessionqueries.h"

namespace quorvale {

void LoadProjectAuditRight(Session &session)
{
    Recordset rs;
    rs.Open(projectAuditSql(session.CurDeptCode, session.CurPostCode), session.DbConn, 0, 1, -1);
    session.HasProjectAudit = !rs.eof();
}

QList<std::pair<QString, bool>> menuPrivileges(const Session &session, const QString &memo)
{
    QList<std::pair<QString, bool>> rows;
    Recordset rs;
    rs.Open(privilegeSql(session.CurPostCode, memo), session.DbConn, 0, 1, -1);
    for (; !rs.eof(); rs.MoveNext())
        rows.append({rs.Fields(QStringLiteral("FormName")).text(),
                     rs.Fields(QStringLiteral("Popedom")).toBool()});
    rs.Close();
    return rows;
}

} // namespace quorvale
