#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// config --server S --login L --password P --database D: the four database
// settings the program reads at sign-in. Only this tool writes them.
AdminCommand configCommand();

} // namespace quorvale
