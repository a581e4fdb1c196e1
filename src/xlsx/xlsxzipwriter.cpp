#include "xlsx/xlsxzipwriter.h"

#include "xlsx/xlsxzipformat.h"

#include <QIODevice>

namespace quorvale::xlsx {

using namespace zipformat;

namespace {

constexpr quint16 Utf8NameFlag = 0x0800;
// Made on Unix (for the permissions), by zip format version 2.0.
constexpr quint16 MadeByUnix = (3 << 8) | 20;
constexpr quint32 RegularFileReadableByAll = 0100644u << 16;
constexpr quint16 DosDate1980 = (1 << 5) | 1;

bool isAscii(const QByteArray &bytes)
{
    for (const char c : bytes)
        if (uchar(c) >= 0x80)
            return false;
    return true;
}

// The fields the local header and the central directory both hold, in
// their common order: version needed to the name's length.
void appendSharedFields(QByteArray &out, const ZipEntry &entry)
{
    append<quint16>(out, entry.versionNeeded);
    append<quint16>(out, entry.flags);
    append<quint16>(out, entry.method);
    append<quint16>(out, entry.dosTime);
    append<quint16>(out, entry.dosDate);
    append<quint32>(out, entry.crc);
    append<quint32>(out, quint32(entry.compressedSize));
    append<quint32>(out, quint32(entry.uncompressedSize));
    append<quint16>(out, quint16(entry.rawName.size()));
}

} // namespace

ZipWriter::ZipWriter(QIODevice &out) : m_out(out) {}

ZipEntry ZipWriter::newEntry(const QString &name, quint32 crc, quint64 compressedSize,
                             quint64 uncompressedSize)
{
    ZipEntry entry;
    entry.name = name;
    entry.rawName = name.toUtf8();
    entry.versionMadeBy = MadeByUnix;
    entry.versionNeeded = 20;
    entry.flags = isAscii(entry.rawName) ? 0 : Utf8NameFlag;
    entry.method = Deflated;
    entry.dosDate = DosDate1980;
    entry.crc = crc;
    entry.compressedSize = compressedSize;
    entry.uncompressedSize = uncompressedSize;
    entry.externalAttributes = RegularFileReadableByAll;
    return entry;
}

ZipEntry ZipWriter::copiedEntry(const ZipEntry &original)
{
    ZipEntry entry = original;
    entry.flags &= ~DataDescriptorFlag; // the sizes go into the local header
    if (entry.versionNeeded > 20)
        entry.versionNeeded = 20; // no Zip64 fields are written
    if (entry.externalAttributes == 0) {
        entry.versionMadeBy = MadeByUnix;
        entry.externalAttributes = RegularFileReadableByAll;
    }
    return entry;
}

bool ZipWriter::fits(const ZipEntry &entry) const
{
    constexpr quint64 Max = 0xFFFFFFFEu;
    return entry.compressedSize <= Max && entry.uncompressedSize <= Max &&
           m_offset + LocalHeaderSize + quint64(entry.rawName.size()) + entry.compressedSize <=
               Max;
}

bool ZipWriter::begin(ZipEntry entry)
{
    entry.localHeaderOffset = m_offset;
    QByteArray header;
    header.reserve(LocalHeaderSize + entry.rawName.size());
    append<quint32>(header, LocalSignature);
    appendSharedFields(header, entry);
    append<quint16>(header, 0); // no local extra field
    header.append(entry.rawName);
    m_written.push_back(std::move(entry));
    return write(header);
}

bool ZipWriter::write(QByteArrayView bytes)
{
    if (m_out.write(bytes.data(), bytes.size()) != bytes.size())
        return false;
    m_offset += quint64(bytes.size());
    return true;
}

bool ZipWriter::finish()
{
    const quint64 directoryOffset = m_offset;
    QByteArray directory;
    for (const ZipEntry &entry : m_written) {
        append<quint32>(directory, CentralSignature);
        append<quint16>(directory, entry.versionMadeBy);
        appendSharedFields(directory, entry);
        append<quint16>(directory, quint16(entry.extra.size()));
        append<quint16>(directory, quint16(entry.comment.size()));
        append<quint16>(directory, 0); // disk
        append<quint16>(directory, entry.internalAttributes);
        append<quint32>(directory, entry.externalAttributes);
        append<quint32>(directory, quint32(entry.localHeaderOffset));
        directory.append(entry.rawName).append(entry.extra).append(entry.comment);
    }
    if (m_written.size() > 0xFFFF || directoryOffset + quint64(directory.size()) > 0xFFFFFFFEu)
        return false;
    const auto directorySize = quint32(directory.size());
    append<quint32>(directory, EndSignature);
    append<quint16>(directory, 0);
    append<quint16>(directory, 0);
    append<quint16>(directory, quint16(m_written.size()));
    append<quint16>(directory, quint16(m_written.size()));
    append<quint32>(directory, directorySize);
    append<quint32>(directory, quint32(directoryOffset));
    append<quint16>(directory, 0); // no comment
    return write(directory);
}

} // namespace quorvale::xlsx
