#pragma once

namespace quorvale {

// Wires the report windows to the main window's menu items.
void registerReportWindows();

} // namespace quorvale
