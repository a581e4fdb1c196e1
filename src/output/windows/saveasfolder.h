#pragma once

#include <QString>

namespace quorvale {

// Where the export's Save As dialog opens: the program's folder, as the
// window was designed, while the user can write there; installed, that is
// /usr/bin or Program Files, so then the user's documents folder, or home.
// A folder without its owner's write permission counts as read-only even
// for an account that could override it, as the export's saves do.
QString saveAsFolder(const QString &programFolder);

} // namespace quorvale
