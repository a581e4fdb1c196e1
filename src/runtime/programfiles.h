#pragma once

#include <QString>

namespace quorvale {

// Where a file that ships with the program is installed.
enum class ProgramFileKind {
    Data,    // pictures and scripts (the main window's background, the schema)
    Library, // modules the program loads at run time
};

// The path of a file shipped with the program. It is looked for in the
// program's own folder first, which is all there is on Windows and in a build
// folder; elsewhere an installed copy lives in the data or library folder of
// the installation the executable belongs to. When no copy exists the
// program's own folder is named, so a message points where the file belongs.
// exeFolder defaults to the running executable's folder.
QString programFile(const QString &name, ProgramFileKind kind = ProgramFileKind::Data,
                    const QString &exeFolder = QString());

} // namespace quorvale
