#pragma once

#include <QList>
#include <QString>
#include <utility>

namespace quorvale {

struct Session;

// Sets the session's HasProjectAudit from the audit-right rows of its
// department and post; a failing query is not trapped.
void LoadProjectAuditRight(Session &session);

// The post's privilege rows of one module: menu item name and whether it is
// granted, False rows before True ones (so any granting row comes last).
// Database errors are thrown.
QList<std::pair<QString, bool>> menuPrivileges(const Session &session, const QString &memo);

} // namespace quorvale
