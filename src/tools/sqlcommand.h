#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// sql [--csv] (-e STATEMENT | -f FILE | -)
AdminCommand sqlCommand();

} // namespace quorvale
