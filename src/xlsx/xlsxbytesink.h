#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <functional>
#include <string>

namespace quorvale::xlsx {

// Buffered output for generated part XML; full chunks go to a consumer (the
// compressor) so a large sheet never sits in memory uncompressed.
class ByteSink {
public:
    using Consumer = std::function<void(std::string &&chunk)>;
    explicit ByteSink(Consumer consumer, size_t chunkSize = 1 << 20);
    ~ByteSink();

    void append(QByteArrayView bytes)
    {
        m_buffer.append(bytes.data(), size_t(bytes.size()));
        if (m_buffer.size() >= m_chunkSize)
            flush();
    }
    void append(char c) { m_buffer.push_back(c); }
    void appendUInt(unsigned value);
    void appendDouble(double value);
    // Text content: XML-escaped, characters XML cannot carry written as _xHHHH_.
    void appendText(QStringView text);
    void flush();

private:
    Consumer m_consumer;
    size_t m_chunkSize;
    std::string m_buffer;
};

} // namespace quorvale::xlsx
