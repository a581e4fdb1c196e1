#pragma once

#include <QByteArrayView>
#include <cstdio>
#include <functional>

namespace quorvale::xlsx {

// Finished parts kept compressed in an anonymous temporary file instead of
// in memory, so a workbook that gets several large sheets before one save
// holds none of them. The file has no name: it goes with the process,
// however the process ends.
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
};

} // namespace quorvale::xlsx
