#include "xlsx/xlsxpartverifier.h"

#include <QBuffer>
#include <quazip/quazip.h>
#include <quazip/quazipfile.h>

#include <algorithm>
#include <memory>

namespace quorvale::xlsx {

PartVerifier::PartVerifier(QByteArray bytes, QStringList names)
    : m_bytes(std::move(bytes)), m_names(std::move(names))
{
    m_worker = std::thread([this] { run(); });
}

PartVerifier::~PartVerifier()
{
    m_stop = true;
    if (m_worker.joinable())
        m_worker.join();
}

bool PartVerifier::isTooLarge(quint64 uncompressed, quint64 compressed)
{
    constexpr quint64 MaxPartSize = quint64(1) << 30;
    constexpr quint64 RatioCheckedFrom = quint64(100) << 20;
    constexpr quint64 MaxCompressionRatio = 500;
    return uncompressed > MaxPartSize ||
           (uncompressed > RatioCheckedFrom &&
            uncompressed > MaxCompressionRatio * std::max<quint64>(compressed, 1));
}

PartVerifier::Damage PartVerifier::firstDamaged()
{
    if (m_worker.joinable())
        m_worker.join();
    return m_damaged;
}

void PartVerifier::run()
{
    QBuffer buffer;
    buffer.setData(m_bytes);
    QuaZip zip(&buffer);
    zip.setAutoClose(false);
    if (!zip.open(QuaZip::mdUnzip))
        return; // the reader that opened the file reports it
    // Reading a whole entry makes the zip layer compare its checksum at close.
    auto chunk = std::make_unique<char[]>(1 << 18);
    for (const QString &name : std::as_const(m_names)) {
        if (m_stop)
            return;
        QuaZipFileInfo64 info;
        if (!zip.setCurrentFile(name, QuaZip::csSensitive) || !zip.getCurrentFileInfo(&info)) {
            m_damaged = {name, 0};
            return;
        }
        if (isTooLarge(info.uncompressedSize, info.compressedSize)) {
            m_damaged = {name, info.uncompressedSize};
            return;
        }
        QuaZipFile file(&zip);
        bool ok = file.open(QIODevice::ReadOnly);
        while (ok && !m_stop) {
            const qint64 n = file.read(chunk.get(), 1 << 18);
            if (n <= 0) {
                ok = n == 0;
                break;
            }
        }
        if (m_stop)
            return;
        file.close();
        if (!ok || file.getZipError() != UNZ_OK) {
            m_damaged = {name, 0};
            return;
        }
    }
}

} // namespace quorvale::xlsx
