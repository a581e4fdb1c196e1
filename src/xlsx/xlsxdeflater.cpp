#include "xlsx/xlsxdeflater.h"

#include "xlsx/xlsxerror.h"

#include <zlib.h>

namespace quorvale::xlsx {

namespace {
constexpr size_t MaxQueued = 4;
}

Deflater::Deflater(int level) : m_level(level)
{
    m_worker = std::thread([this] { run(); });
}

Deflater::~Deflater()
{
    if (m_worker.joinable()) {
        {
            std::lock_guard lock(m_mutex);
            m_done = true;
        }
        m_changed.notify_all();
        m_worker.join();
    }
}

void Deflater::push(std::string &&chunk)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_queue.size() < MaxQueued || m_failed; });
    m_queue.push_back(std::move(chunk));
    lock.unlock();
    m_changed.notify_all();
}

void Deflater::run()
{
    z_stream zs{};
    if (deflateInit2(&zs, m_level, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        std::lock_guard lock(m_mutex);
        m_failed = true;
        m_changed.notify_all();
        return;
    }
    uLong crc = crc32(0, nullptr, 0);
    QByteArray &out = m_result.compressed;
    for (;;) {
        std::string chunk;
        bool last = false;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return !m_queue.empty() || m_done; });
            if (!m_queue.empty()) {
                chunk = std::move(m_queue.front());
                m_queue.pop_front();
            }
            last = m_queue.empty() && m_done;
        }
        m_changed.notify_all();
        crc = crc32(crc, reinterpret_cast<const Bytef *>(chunk.data()), uInt(chunk.size()));
        m_result.size += qint64(chunk.size());
        zs.next_in = reinterpret_cast<Bytef *>(chunk.data());
        zs.avail_in = uInt(chunk.size());
        const int flush = last ? Z_FINISH : Z_NO_FLUSH;
        int rc;
        do {
            const qsizetype room = qsizetype(deflateBound(&zs, zs.avail_in)) + 64;
            const qsizetype used = out.size();
            out.resize(used + room);
            zs.next_out = reinterpret_cast<Bytef *>(out.data() + used);
            zs.avail_out = uInt(room);
            rc = deflate(&zs, flush);
            out.resize(used + room - qsizetype(zs.avail_out));
        } while (zs.avail_in > 0 || (flush == Z_FINISH && rc != Z_STREAM_END));
        if (last)
            break;
    }
    deflateEnd(&zs);
    m_result.crc = quint32(crc);
}

Deflater::Result Deflater::finish()
{
    {
        std::lock_guard lock(m_mutex);
        m_done = true;
    }
    m_changed.notify_all();
    m_worker.join();
    if (m_failed)
        throw Error(ErrorNumber::OutOfMemory, QStringLiteral("内存不足，无法压缩工作簿"));
    return std::move(m_result);
}

Deflater::Result Deflater::compress(const QByteArray &data, int level)
{
    Deflater deflater(level);
    deflater.push(std::string(data.constData(), size_t(data.size())));
    return deflater.finish();
}

} // namespace quorvale::xlsx
