#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtEndian>

// The zip file format's records, as the reader and the writer share them.
namespace quorvale::xlsx::zipformat {

constexpr quint32 LocalSignature = 0x04034b50;
constexpr quint32 CentralSignature = 0x02014b50;
constexpr quint32 EndSignature = 0x06054b50;
constexpr quint32 Zip64EndSignature = 0x06064b50;
constexpr quint32 Zip64LocatorSignature = 0x07064b50;
constexpr qint64 LocalHeaderSize = 30;
constexpr qint64 CentralHeaderSize = 46;
constexpr qint64 EndRecordSize = 22;
constexpr qint64 Zip64EndRecordSize = 56;
constexpr qint64 Zip64LocatorSize = 20;
constexpr quint16 Zip64ExtraId = 0x0001;

constexpr quint16 Stored = 0;
constexpr quint16 Deflated = 8;
constexpr quint16 EncryptedFlag = 0x0001;
constexpr quint16 DataDescriptorFlag = 0x0008;

inline quint16 read16(const uchar *p) { return qFromLittleEndian<quint16>(p); }
inline quint32 read32(const uchar *p) { return qFromLittleEndian<quint32>(p); }
inline quint64 read64(const uchar *p) { return qFromLittleEndian<quint64>(p); }

template <typename T> void append(QByteArray &out, T value)
{
    uchar bytes[sizeof(T)];
    qToLittleEndian(value, bytes);
    out.append(reinterpret_cast<const char *>(bytes), sizeof(T));
}

// Calls f(id, body) for each field of an extra block; false when the block is
// cut short.
template <typename F> bool forEachExtra(QByteArrayView extra, F f)
{
    const auto *p = reinterpret_cast<const uchar *>(extra.data());
    qsizetype at = 0;
    while (extra.size() - at >= 4) {
        const quint16 id = read16(p + at);
        const quint16 length = read16(p + at + 2);
        if (extra.size() - at - 4 < length)
            return false;
        f(id, QByteArrayView(extra.data() + at + 4, length));
        at += 4 + length;
    }
    return true;
}

// The 64-bit values a Zip64 field holds for those of the 32-bit ones that
// are all ones, in their fixed order; false when the field lacks one.
inline bool takeZip64(QByteArrayView extra, quint64 &uncompressed, quint64 &compressed,
                      quint64 &offset)
{
    bool complete = true;
    const bool whole = forEachExtra(extra, [&](quint16 id, QByteArrayView body) {
        if (id != Zip64ExtraId)
            return;
        const auto *p = reinterpret_cast<const uchar *>(body.data());
        qsizetype at = 0;
        for (quint64 *value : {&uncompressed, &compressed, &offset}) {
            if (*value != 0xFFFFFFFFu)
                continue;
            if (body.size() - at < 8) {
                complete = false;
                return;
            }
            *value = read64(p + at);
            at += 8;
        }
    });
    return whole && complete;
}

// The extra block less its Zip64 field, which a copy writes anew if at all.
inline QByteArray withoutZip64(QByteArrayView extra)
{
    QByteArray kept;
    forEachExtra(extra, [&](quint16 id, QByteArrayView body) {
        if (id == Zip64ExtraId)
            return;
        append<quint16>(kept, id);
        append<quint16>(kept, quint16(body.size()));
        kept.append(body);
    });
    return kept;
}

} // namespace quorvale::xlsx::zipformat
