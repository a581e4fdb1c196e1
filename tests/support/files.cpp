#include "support/files.h"

#include "runtime/outputset.h"
#include "xlsx/xlsxworkbook.h"

#include <QFile>
#include <stdexcept>

namespace quorvale::testing {

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        throw std::runtime_error("cannot write " + path.toStdString() + ": " +
                                 file.errorString().toStdString());
}

} // namespace quorvale::testing

void quorvale::testing::saveWorkbook(xlsx::Workbook &book)
{
    OutputSet outputs;
    book.write(outputs.add(book.path()).device());
    outputs.commit();
}
