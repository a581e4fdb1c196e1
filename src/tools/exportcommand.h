#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// export --report NAME --office CODE --user NO --password PW [--post CODE]
//        [--month YYYYMM | --months A:B] [--cutoff DATE | --receipts A:B]
//        --xlsx FILE [--sheet NAME] [--pdf FILE]
// The report window's work without the window, for scheduled exports.
AdminCommand exportCommand();

} // namespace quorvale
