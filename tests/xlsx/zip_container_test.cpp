#include "support/files.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"
#include "xlsx/xlsxzipreader.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>
#include <zlib.h>

using namespace quorvale;
using namespace quorvale::xlsx;

namespace {

// How other programs lay out the zip container of a workbook.
enum class Shape {
    Deflated,       // as Excel does
    Stored,         // no compression at all
    DataDescriptor, // sizes after the data, zeros in the local header (streaming writers)
    Zip64,          // 64-bit sizes and offsets in the central directory
    Comment,        // an archive comment after the end record
};

template <typename T> void put(QByteArray &out, T value)
{
    char bytes[sizeof(T)];
    qToLittleEndian(value, bytes);
    out.append(bytes, sizeof(T));
}

QByteArray deflateRaw(const QByteArray &data)
{
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    QByteArray out(int(deflateBound(&stream, uLong(data.size()))), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = uInt(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return out;
}

// The parts of `source` packed anew in the given shape.
QByteArray repack(const QByteArray &source, Shape shape)
{
    const ZipReader reader(source);
    QByteArray file, directory;
    quint16 count = 0;
    for (const ZipEntry &entry : reader.entries()) {
        QByteArray content;
        reader.inflate(entry, 1 << 30, content);
        const bool stored = shape == Shape::Stored;
        const QByteArray data = stored ? content : deflateRaw(content);
        const auto crc = quint32(crc32(0, reinterpret_cast<const Bytef *>(content.constData()),
                                       uInt(content.size())));
        const bool descriptor = shape == Shape::DataDescriptor;
        const auto offset = quint32(file.size());
        put<quint32>(file, 0x04034b50);
        put<quint16>(file, 20);
        put<quint16>(file, descriptor ? 0x0008 : 0);
        put<quint16>(file, stored ? 0 : 8);
        put<quint32>(file, 0);
        put<quint32>(file, descriptor ? 0 : crc);
        put<quint32>(file, descriptor ? 0 : quint32(data.size()));
        put<quint32>(file, descriptor ? 0 : quint32(content.size()));
        put<quint16>(file, quint16(entry.rawName.size()));
        put<quint16>(file, 0);
        file += entry.rawName + data;
        if (descriptor) {
            put<quint32>(file, 0x08074b50);
            put<quint32>(file, crc);
            put<quint32>(file, quint32(data.size()));
            put<quint32>(file, quint32(content.size()));
        }
        const bool zip64 = shape == Shape::Zip64;
        QByteArray extra;
        if (zip64) {
            put<quint16>(extra, 0x0001);
            put<quint16>(extra, 24);
            put<quint64>(extra, quint64(content.size()));
            put<quint64>(extra, quint64(data.size()));
            put<quint64>(extra, offset);
        }
        put<quint32>(directory, 0x02014b50);
        put<quint16>(directory, 45);
        put<quint16>(directory, zip64 ? 45 : 20);
        put<quint16>(directory, descriptor ? 0x0008 : 0);
        put<quint16>(directory, stored ? 0 : 8);
        put<quint32>(directory, 0);
        put<quint32>(directory, crc);
        put<quint32>(directory, zip64 ? 0xFFFFFFFF : quint32(data.size()));
        put<quint32>(directory, zip64 ? 0xFFFFFFFF : quint32(content.size()));
        put<quint16>(directory, quint16(entry.rawName.size()));
        put<quint16>(directory, quint16(extra.size()));
        put<quint16>(directory, 0);
        put<quint16>(directory, 0);
        put<quint16>(directory, 0);
        put<quint32>(directory, 0);
        put<quint32>(directory, zip64 ? 0xFFFFFFFF : offset);
        directory += entry.rawName + extra;
        ++count;
    }
    const auto directoryOffset = quint64(file.size());
    file += directory;
    if (shape == Shape::Zip64) {
        const auto record = quint64(file.size());
        put<quint32>(file, 0x06064b50);
        put<quint64>(file, 44);
        put<quint16>(file, 45);
        put<quint16>(file, 45);
        put<quint32>(file, 0);
        put<quint32>(file, 0);
        put<quint64>(file, count);
        put<quint64>(file, count);
        put<quint64>(file, quint64(directory.size()));
        put<quint64>(file, directoryOffset);
        put<quint32>(file, 0x07064b50);
        put<quint32>(file, 0);
        put<quint64>(file, record);
        put<quint32>(file, 1);
    }
    const QByteArray comment = shape == Shape::Comment ? QByteArray("made by hand") : QByteArray();
    put<quint32>(file, 0x06054b50);
    put<quint16>(file, 0);
    put<quint16>(file, 0);
    put<quint16>(file, count);
    put<quint16>(file, count);
    put<quint32>(file, quint32(directory.size()));
    put<quint32>(file, shape == Shape::Zip64 ? 0xFFFFFFFF : quint32(directoryOffset));
    put<quint16>(file, quint16(comment.size()));
    return file + comment;
}

QByteArray newWorkbookBytes(const QString &path)
{
    auto book = Workbook::create(path);
    Worksheet &sheet = book->worksheet(1);
    sheet.setName(QStringLiteral("收款"));
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    book->write(out);
    return out.data();
}

QByteArray written(Workbook &book)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    book.write(out);
    return out.data();
}

} // namespace

TEST(ZipContainer, WorkbooksPackedByOtherWritersAreEditedAndKeepTheirParts)
{
    const QTemporaryDir dir;
    const QByteArray original = newWorkbookBytes(dir.filePath(QStringLiteral("new.xlsx")));
    const struct {
        Shape shape;
        const char *name;
    } cases[] = {{Shape::Deflated, "deflated"},
                 {Shape::Stored, "stored"},
                 {Shape::DataDescriptor, "data descriptors"},
                 {Shape::Zip64, "Zip64"},
                 {Shape::Comment, "archive comment"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QString path = dir.filePath(QString::fromLatin1(c.name) + QStringLiteral(".xlsx"));
        quorvale::testing::writeBytes(path, repack(original, c.shape));
        auto book = Workbook::open(path);
        ASSERT_EQ(book->worksheetCount(), 1);
        const QByteArray sheetXml = book->originalPart(book->worksheet(1));
        EXPECT_TRUE(sheetXml.contains("<sheetData"));
        book->addWorksheetAfterLast().setName(QStringLiteral("QV"));

        // The result opens again with the untouched sheet as it was.
        const QString result = dir.filePath(QStringLiteral("result.xlsx"));
        quorvale::testing::writeBytes(result, written(*book));
        auto again = Workbook::open(result);
        ASSERT_EQ(again->worksheetCount(), 2);
        EXPECT_EQ(again->worksheet(1).name(), QStringLiteral("收款"));
        EXPECT_EQ(again->originalPart(again->worksheet(1)), sheetXml);
    }
}

TEST(ZipContainer, DamagedContainersAreRefusedAndNamed)
{
    const QTemporaryDir dir;
    const QByteArray original = newWorkbookBytes(dir.filePath(QStringLiteral("new.xlsx")));
    // The sheet's checksum as the central directory records it, changed.
    const qsizetype central = original.lastIndexOf("xl/worksheets/sheet1.xml") - 46;
    ASSERT_EQ(original.mid(central, 4), QByteArray("PK\x01\x02"));
    QByteArray wrongCrc = original;
    wrongCrc[central + 16] = char(wrongCrc[central + 16] ^ 0x01);
    QByteArray understated = original; // the record says 16 bytes
    qToLittleEndian<quint32>(16, understated.data() + central + 24);
    const QByteArray cutShort = original.left(original.size() - 30);

    const struct {
        const char *name;
        QByteArray bytes;
        const char *message;
    } cases[] = {
        {"a part's checksum changed", wrongCrc, "校验和不符"},
        {"a part longer than its record", understated, "校验和不符"},
        {"the directory cut off", cutShort, "不是有效的 Excel 工作簿"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QString path = dir.filePath(QStringLiteral("damaged.xlsx"));
        quorvale::testing::writeBytes(path, c.bytes);
        try {
            auto book = Workbook::open(path);
            book->addWorksheetAfterLast();
            written(*book);
            FAIL() << "written";
        } catch (const xlsx::Error &e) {
            EXPECT_TRUE(e.description().contains(QString::fromUtf8(c.message))) << e.description().toStdString();
        }
    }
}

#ifndef Q_OS_WIN
// Tools that unpack a package (unzip, diff and version-control filters)
// create its parts with the permissions the entries carry.
TEST(ZipContainer, UnpackedPartsAreReadableByAll)
{
    const QString unzip = QStandardPaths::findExecutable(QStringLiteral("unzip"));
    ASSERT_FALSE(unzip.isEmpty()) << "unzip is a test dependency";
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("new.xlsx"));
    quorvale::testing::writeBytes(path, newWorkbookBytes(path));
    const QString out = dir.filePath(QStringLiteral("out"));
    ASSERT_EQ(QProcess::execute(unzip, {QStringLiteral("-q"), path, QStringLiteral("-d"), out}), 0);
    for (const QString &part : {QStringLiteral("[Content_Types].xml"),
                                QStringLiteral("xl/workbook.xml"),
                                QStringLiteral("xl/worksheets/sheet1.xml")}) {
        SCOPED_TRACE(part.toStdString());
        const QFile::Permissions permissions = QFileInfo(QDir(out).filePath(part)).permissions();
        EXPECT_TRUE(permissions & QFile::ReadOwner);
        EXPECT_TRUE(permissions & QFile::ReadOther);
    }
}
#endif
