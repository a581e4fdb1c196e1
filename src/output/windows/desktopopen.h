#pragma once

#include <QString>

namespace quorvale {

// Opens a saved file with the desktop's program for its type, as the
// export's "显示Excel" makes the spreadsheet program show the workbook.
// False when the desktop names no program for the type (where it would
// otherwise say so only on the console) or the program cannot be started.
bool openWithDesktopProgram(const QString &path);

} // namespace quorvale
