#pragma once

#include <QImage>
#include <QString>

namespace quorvale {

// Writes a drawn picture through the safe-write path: the file appears only
// complete. Throws RuntimeError naming the file.
void writeImage(const QImage &image, const QString &path, const char *format);
void writeFile(const QByteArray &bytes, const QString &path);

} // namespace quorvale
