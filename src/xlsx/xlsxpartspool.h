#pragma once

#include <QByteArrayView>
#include <cstdio>
#include <functional>
#include <mutex>

namespace quorvale::xlsx {

// Generated parts kept compressed in an anonymous temporary file instead of
// in memory, so a large sheet, or a workbook that gets several before one
// save, is never held whole. The file has no name: it goes with the
// process, however the process ends. Compressors on several threads may
// store into it at once.
class PartSpool {
  public:
    struct Span {
        qint64 offset = -1; // -1: not spooled
        qint64 length = 0;
    };

    PartSpool();
    ~PartSpool();
    PartSpool(const PartSpool &) = delete;
    PartSpool &operator=(const PartSpool &) = delete;

    // False where the system gives no temporary file; parts then stay in memory.
    bool isAvailable() const { return m_file != nullptr; }
    // Throws Error when the bytes cannot be written (a full temporary folder).
    Span store(QByteArrayView bytes);
    // Hands the span back in pieces; throws Error when it cannot be read.
    void read(const Span &span, const std::function<void(QByteArrayView)> &sink) const;

  private:
    std::FILE *m_file = nullptr;
    qint64 m_end = 0;
    mutable std::mutex m_mutex;
};

} // namespace quorvale::xlsx
