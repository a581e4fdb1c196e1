#pragma once

#include "tools/admincommand.h"

namespace quorvale {

// import --table NAME FILE.csv
AdminCommand importCommand();

} // namespace quorvale
