#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <functional>
#include <vector>

namespace quorvale::xlsx {

// One entry of a zip file's central directory, with what it takes to copy
// the entry unchanged into another zip file.
struct ZipEntry {
    QString name;
    QByteArray rawName;
    quint16 versionMadeBy = 0;
    quint16 versionNeeded = 0;
    quint16 flags = 0;
    quint16 method = 0;
    quint16 dosTime = 0;
    quint16 dosDate = 0;
    quint32 crc = 0;
    quint64 compressedSize = 0;
    quint64 uncompressedSize = 0;
    quint64 localHeaderOffset = 0;
    quint16 internalAttributes = 0;
    quint32 externalAttributes = 0;
    QByteArray extra; // the central directory's, without the Zip64 field
    QByteArray comment;
};

// Reads a zip file held whole in memory (a workbook is read whole anyway).
// Only what a workbook package uses: stored and deflated entries, Zip64
// sizes and offsets, no encryption, no multi-disk archives.
class ZipReader {
  public:
    enum class Status { Ok, Damaged, Unsupported, CrcMismatch, TooLarge, Stopped };

    // The bytes must outlive the reader. isValid() is false when they are
    // not a zip file or its directory is damaged.
    explicit ZipReader(const QByteArray &bytes);

    bool isValid() const { return m_valid; }
    const std::vector<ZipEntry> &entries() const { return m_entries; }

    // The entry's bytes as stored (compressed); empty view when they lie
    // outside the file.
    QByteArrayView rawData(const ZipEntry &entry) const;
    // Expands the entry into `sink` in pieces and checks its checksum;
    // stops with TooLarge once more than `limit` bytes come out, and with
    // Stopped when the sink returns false.
    Status inflate(const ZipEntry &entry, quint64 limit,
                   const std::function<bool(QByteArrayView)> &sink) const;
    // The same into one array (empty unless Ok).
    Status inflate(const ZipEntry &entry, quint64 limit, QByteArray &content) const;

  private:
    bool readDirectory();

    const QByteArray &m_bytes;
    std::vector<ZipEntry> m_entries;
    bool m_valid = false;
};

} // namespace quorvale::xlsx
