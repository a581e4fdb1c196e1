#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// make-background FILE: the main window's background bitmap, drawn at build time.
AdminCommand makeBackgroundCommand();

} // namespace quorvale
