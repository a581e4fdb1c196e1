#pragma once

#include <QString>
#include <QStringList>

namespace quorvale {

// Text for a terminal: control characters that came from arguments or file
// names (an escape sequence, a carriage return) are shown as \xNN instead of
// acting on the terminal.
QString printableText(const QString &text);

// Columns a text takes on a terminal: East Asian wide characters two, marks none.
int displayWidth(const QString &text);

// Rows as an aligned table, one line each, columns two blanks apart.
QString alignedTable(const QList<QStringList> &rows);

} // namespace quorvale
