#pragma once

#include "db/connection.h"

namespace quorvale {

// The database the four settings name, opened as the program opens it
// (the same connection string and driver choice). Throws RuntimeError when
// no server is configured or the open fails.
ConnectionPtr openConfiguredDatabase();

} // namespace quorvale
