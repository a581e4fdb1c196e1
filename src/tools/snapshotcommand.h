#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// snapshot --to FILE [--from ODBC-CONNECTION-STRING] [--force]
AdminCommand snapshotCommand();

} // namespace quorvale
