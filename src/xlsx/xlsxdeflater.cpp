#include "xlsx/xlsxdeflater.h"

#include "xlsx/xlsxerror.h"

#include <memory>
#include <zlib.h>

namespace quorvale::xlsx {

namespace {
// Chunks waiting for the compressor: enough to keep both threads busy.
constexpr size_t MaxQueued = 4;
constexpr size_t OutputSize = 256 * 1024;
} // namespace

Deflater::Deflater(int level, Output output) : m_level(level), m_output(std::move(output))
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
    if (m_failed)
        return; // reported by finish()
    m_queue.push_back(std::move(chunk));
    lock.unlock();
    m_changed.notify_all();
}

void Deflater::run()
{
    z_stream zs{};
    const auto fail = [this](std::exception_ptr error) {
        std::lock_guard lock(m_mutex);
        m_failed = true;
        m_outputError = error;
        m_changed.notify_all();
    };
    if (deflateInit2(&zs, m_level, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        fail(nullptr);
        return;
    }
    uLong crc = crc32(0, nullptr, 0);
    auto out = std::make_unique_for_overwrite<Bytef[]>(OutputSize);
    bool failed = false;
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
        if (failed) {
            if (last)
                break;
            continue;
        }
        crc = crc32(crc, reinterpret_cast<const Bytef *>(chunk.data()), uInt(chunk.size()));
        m_result.size += qint64(chunk.size());
        zs.next_in = reinterpret_cast<Bytef *>(chunk.data());
        zs.avail_in = uInt(chunk.size());
        const int flush = last ? Z_FINISH : Z_NO_FLUSH;
        int rc;
        do {
            zs.next_out = out.get();
            zs.avail_out = uInt(OutputSize);
            rc = deflate(&zs, flush);
            const size_t produced = OutputSize - zs.avail_out;
            if (produced > 0) {
                try {
                    m_output(QByteArrayView(reinterpret_cast<const char *>(out.get()),
                                            qsizetype(produced)));
                } catch (...) {
                    fail(std::current_exception());
                    failed = true;
                    break;
                }
            }
        } while (zs.avail_in > 0 || zs.avail_out == 0 || (flush == Z_FINISH && rc != Z_STREAM_END));
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
    if (m_outputError)
        std::rethrow_exception(m_outputError);
    if (m_failed)
        throw Error(ErrorNumber::OutOfMemory, QStringLiteral("内存不足，无法压缩工作簿"));
    return m_result;
}

QByteArray Deflater::compress(const QByteArray &data, Result &result)
{
    QByteArray out;
    Deflater deflater(DefaultLevel, [&out](QByteArrayView bytes) { out.append(bytes); });
    deflater.push(std::string(data.constData(), size_t(data.size())));
    result = deflater.finish();
    return out;
}

} // namespace quorvale::xlsx
