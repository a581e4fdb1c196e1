#include "reports/reportregistry.h"

namespace quorvale {

void registerReportWindows() {}

} // namespace quorvale
