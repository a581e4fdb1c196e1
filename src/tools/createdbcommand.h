#pragma once

#include "dbtools/databasefile.h"
#include "tools/admincommand.h"

namespace quorvale {

// create-db FILE [--demo] [--scale N] [--force]
AdminCommand createDbCommand();

// The options a create-db command line asks for; throws UsageError.
DatabaseFileOptions parseCreateDbArguments(const QStringList &arguments, QString *path);

} // namespace quorvale
