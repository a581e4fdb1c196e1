#pragma once

#include "xlsx/xlsxzipreader.h"

#include <QByteArray>
#include <QByteArrayView>
#include <vector>

class QIODevice;

namespace quorvale::xlsx {

// Writes a zip file entry by entry into a device: each entry's checksum and
// sizes are known before its bytes come (already compressed), so no data
// descriptors and no seeking back. Sizes stay within 32 bits, as every
// workbook reader accepts.
class ZipWriter {
  public:
    explicit ZipWriter(QIODevice &out);

    // An entry for a part made now: deflated, dated 1980-01-01 as Excel
    // dates its parts, an ordinary file readable by all.
    static ZipEntry newEntry(const QString &name, quint32 crc, quint64 compressedSize,
                             quint64 uncompressedSize);
    // An entry copied from another zip file, as it was there; an entry that
    // carries no permissions gets those of a new one.
    static ZipEntry copiedEntry(const ZipEntry &original);

    // False when the entry, or the file with it, would outgrow 32 bits.
    bool fits(const ZipEntry &entry) const;
    // Starts the entry; its compressedSize bytes follow through write().
    bool begin(ZipEntry entry);
    bool write(QByteArrayView bytes);
    // The central directory and the end record.
    bool finish();

  private:
    QIODevice &m_out;
    quint64 m_offset = 0;
    std::vector<ZipEntry> m_written;
};

} // namespace quorvale::xlsx
