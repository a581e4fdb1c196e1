#pragma once

#include <QString>

namespace quorvale {

// The program's title, used when a box is given no title.
QString programTitle();
// The release, "major.minor.patch", as the build's project version sets it.
QString programVersion();
// The executable's name without folder and extension, as some titles use it.
QString exeName();

} // namespace quorvale
