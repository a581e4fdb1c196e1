#pragma once

#include <QByteArray>
#include <QString>

namespace quorvale::testing {

// The whole file, or nothing when it cannot be read (a missing file reads empty).
QByteArray bytesOf(const QString &path);
// Replaces the file with the bytes; throws std::runtime_error when it cannot.
void writeBytes(const QString &path, const QByteArray &bytes);

} // namespace quorvale::testing

namespace quorvale::xlsx {
class Workbook;
}

namespace quorvale::testing {

// Writes the workbook over its own path the way the program saves one.
void saveWorkbook(xlsx::Workbook &book);

} // namespace quorvale::testing
