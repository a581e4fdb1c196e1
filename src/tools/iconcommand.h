#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// make-icon [--size N] FILE: the program's icon as a PNG, drawn at build time
// for the desktop menu's fixed sizes.
AdminCommand makeIconCommand();

} // namespace quorvale
