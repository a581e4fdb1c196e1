#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// quorvale-admin --help: how to call it, every command with its summary, the
// exit statuses.
void printAdminHelp(const QList<AdminCommand> &commands, QTextStream &out);

// quorvale-admin COMMAND --help: the usage line, every argument and option,
// the example.
void printCommandHelp(const AdminCommand &command, QTextStream &out);

} // namespace quorvale
