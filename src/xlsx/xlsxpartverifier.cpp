#include "xlsx/xlsxpartverifier.h"

#include "xlsx/xlsxzipreader.h"

#include <QSet>

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
    const ZipReader zip(m_bytes);
    if (!zip.isValid())
        return; // the reader that opened the file reports it
    const QSet<QString> names(m_names.cbegin(), m_names.cend());
    // Expanding a whole entry compares it with its checksum.
    for (const ZipEntry &entry : zip.entries()) {
        if (m_stop)
            return;
        if (!names.contains(entry.name))
            continue;
        if (isTooLarge(entry.uncompressedSize, entry.compressedSize)) {
            m_damaged = {entry.name, entry.uncompressedSize};
            return;
        }
        const auto status = zip.inflate(entry, entry.uncompressedSize,
                                        [this](QByteArrayView) { return !m_stop; });
        if (status == ZipReader::Status::Stopped)
            return;
        if (status != ZipReader::Status::Ok) {
            m_damaged = {entry.name, 0};
            return;
        }
    }
}

} // namespace quorvale::xlsx
