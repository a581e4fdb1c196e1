#pragma once

#include <QStringList>

namespace quorvale {

// The program's arguments as the user typed them. On Windows they come from
// the UTF-16 command line, since argv holds them in the code page, which
// cannot spell every file name. Elsewhere they must be UTF-8: one that is
// not (a file name in another encoding) is reported by index, since reading
// it would silently turn it into a different name.
QStringList consoleArguments(int argc, char **argv, int &invalidIndex);

// What the program prints is UTF-8 with the line ends it writes, everywhere;
// a Windows console is told so.
void useUtf8Console();

// Draws and lays out off screen, with the system's fonts: on Windows Qt's
// off-screen platform reads fonts from a folder and knows none of its own.
void useOffscreenPlatform();

} // namespace quorvale
