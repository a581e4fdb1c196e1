#pragma once

#include <QString>

namespace quorvale {

// Statements of the sign-in and the main window. Values are spliced into
// the designed text with each single quote doubled, so a quote in a typed
// value cannot end the literal.

// The employee check; the password is trimmed, the user number is not.
QString employeeCheckSql(const QString &userText, const QString &passwordText);
// The user's current posts (no leaving date on the employee or the post).
QString currentPostsSql(const QString &userText);
// Rows of the project-management audit right for a department and post.
QString projectAuditSql(const QString &deptCode, const QString &postCode);
// Granted menu items of a post for one module, ordered False before True.
QString privilegeSql(const QString &postCode, const QString &memo);

} // namespace quorvale
