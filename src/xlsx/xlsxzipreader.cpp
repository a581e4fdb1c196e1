#include "xlsx/xlsxzipreader.h"

#include "xlsx/xlsxzipformat.h"

#include <zlib.h>

#include <algorithm>
#include <memory>

namespace quorvale::xlsx {

using namespace zipformat;

ZipReader::ZipReader(const QByteArray &bytes) : m_bytes(bytes)
{
    m_valid = readDirectory();
}

bool ZipReader::readDirectory()
{
    const auto *data = reinterpret_cast<const uchar *>(m_bytes.constData());
    const qint64 size = m_bytes.size();
    if (size < EndRecordSize)
        return false;
    // The end record sits at the end, behind a comment of at most 64 KiB.
    qint64 end = -1;
    for (qint64 at = size - EndRecordSize; at >= std::max<qint64>(0, size - EndRecordSize - 0xFFFF);
         --at) {
        if (read32(data + at) == EndSignature &&
            at + EndRecordSize + read16(data + at + 20) <= size) {
            end = at;
            break;
        }
    }
    if (end < 0)
        return false;
    quint64 count = read16(data + end + 10);
    quint64 directorySize = read32(data + end + 12);
    quint64 directoryOffset = read32(data + end + 16);
    if (end >= Zip64LocatorSize && read32(data + end - Zip64LocatorSize) == Zip64LocatorSignature) {
        const quint64 record = read64(data + end - Zip64LocatorSize + 8);
        if (record > quint64(size) - Zip64EndRecordSize ||
            read32(data + record) != Zip64EndSignature)
            return false;
        count = read64(data + record + 32);
        directorySize = read64(data + record + 40);
        directoryOffset = read64(data + record + 48);
    }
    if (directoryOffset > quint64(size) || directorySize > quint64(size) - directoryOffset ||
        count > directorySize / CentralHeaderSize)
        return false;

    m_entries.reserve(count);
    const uchar *at = data + directoryOffset;
    const uchar *const directoryEnd = at + directorySize;
    for (quint64 i = 0; i < count; ++i) {
        if (directoryEnd - at < CentralHeaderSize || read32(at) != CentralSignature)
            return false;
        const quint16 nameLength = read16(at + 28);
        const quint16 extraLength = read16(at + 30);
        const quint16 commentLength = read16(at + 32);
        if (directoryEnd - at < CentralHeaderSize + nameLength + extraLength + commentLength)
            return false;
        ZipEntry entry;
        entry.versionMadeBy = read16(at + 4);
        entry.versionNeeded = read16(at + 6);
        entry.flags = read16(at + 8);
        entry.method = read16(at + 10);
        entry.dosTime = read16(at + 12);
        entry.dosDate = read16(at + 14);
        entry.crc = read32(at + 16);
        entry.compressedSize = read32(at + 20);
        entry.uncompressedSize = read32(at + 24);
        entry.internalAttributes = read16(at + 36);
        entry.externalAttributes = read32(at + 38);
        entry.localHeaderOffset = read32(at + 42);
        const char *name = reinterpret_cast<const char *>(at + CentralHeaderSize);
        entry.rawName = QByteArray(name, nameLength);
        entry.name = QString::fromUtf8(entry.rawName);
        const QByteArrayView extra(name + nameLength, extraLength);
        if (!takeZip64(extra, entry.uncompressedSize, entry.compressedSize,
                       entry.localHeaderOffset))
            return false;
        entry.extra = withoutZip64(extra);
        entry.comment = QByteArray(name + nameLength + extraLength, commentLength);
        m_entries.push_back(std::move(entry));
        at += CentralHeaderSize + nameLength + extraLength + commentLength;
    }
    return true;
}

QByteArrayView ZipReader::rawData(const ZipEntry &entry) const
{
    const auto *data = reinterpret_cast<const uchar *>(m_bytes.constData());
    const quint64 size = quint64(m_bytes.size());
    const quint64 local = entry.localHeaderOffset;
    if (local > size || size - local < LocalHeaderSize || read32(data + local) != LocalSignature)
        return {};
    const quint64 start = local + LocalHeaderSize + read16(data + local + 26) +
                          read16(data + local + 28);
    if (start > size || entry.compressedSize > size - start)
        return {};
    return QByteArrayView(m_bytes.constData() + start, qsizetype(entry.compressedSize));
}

ZipReader::Status ZipReader::inflate(const ZipEntry &entry, quint64 limit,
                                     const std::function<bool(QByteArrayView)> &sink) const
{
    if (entry.flags & EncryptedFlag)
        return Status::Unsupported;
    const QByteArrayView raw = rawData(entry);
    if (raw.isNull() && entry.compressedSize > 0)
        return Status::Damaged;
    if (entry.method == Stored) {
        if (quint64(raw.size()) > limit)
            return Status::TooLarge;
        if (!sink(raw))
            return Status::Stopped;
        const quint32 crc = quint32(crc32_z(0, reinterpret_cast<const Bytef *>(raw.data()),
                                            size_t(raw.size())));
        return crc == entry.crc ? Status::Ok : Status::CrcMismatch;
    }
    if (entry.method != Deflated)
        return Status::Unsupported;

    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return Status::Damaged;
    const std::unique_ptr<z_stream, int (*)(z_stream *)> guard(&stream, inflateEnd);
    constexpr uInt ChunkSize = 1 << 18;
    auto chunk = std::make_unique<Bytef[]>(ChunkSize);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(raw.data()));
    quint64 left = quint64(raw.size());
    quint64 produced = 0;
    quint32 crc = 0;
    int status = Z_OK;
    while (status != Z_STREAM_END) {
        if (stream.avail_in == 0) {
            if (left == 0)
                return Status::Damaged; // the stream ends before its last block
            stream.avail_in = uInt(std::min<quint64>(left, 1u << 30));
            left -= stream.avail_in;
        }
        stream.next_out = chunk.get();
        stream.avail_out = ChunkSize;
        status = ::inflate(&stream, Z_NO_FLUSH);
        if (status != Z_OK && status != Z_STREAM_END)
            return Status::Damaged;
        const uInt n = ChunkSize - stream.avail_out;
        produced += n;
        // More than the directory records is a damaged entry (or a zip bomb):
        // stop at once.
        if (produced > entry.uncompressedSize)
            return Status::CrcMismatch;
        if (produced > limit)
            return Status::TooLarge;
        crc = quint32(crc32_z(crc, chunk.get(), n));
        if (!sink(QByteArrayView(reinterpret_cast<const char *>(chunk.get()), n)))
            return Status::Stopped;
    }
    if (crc != entry.crc || produced != entry.uncompressedSize)
        return Status::CrcMismatch;
    return Status::Ok;
}

ZipReader::Status ZipReader::inflate(const ZipEntry &entry, quint64 limit,
                                     QByteArray &content) const
{
    content.clear();
    content.reserve(qsizetype(std::min(entry.uncompressedSize, limit)));
    const Status status =
        inflate(entry, limit, [&content](QByteArrayView bytes) {
            content.append(bytes);
            return true;
        });
    if (status != Status::Ok)
        content.clear();
    return status;
}

} // namespace quorvale::xlsx
