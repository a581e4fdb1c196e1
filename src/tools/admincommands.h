#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// Every command of quorvale-admin, in the order its help lists them.
QList<AdminCommand> adminCommands();

} // namespace quorvale
