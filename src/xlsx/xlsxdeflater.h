#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace quorvale::xlsx {

// Raw deflate of one zip entry on a worker thread, so that generating the XML
// and compressing it overlap on two cores. The compressed bytes go to the
// output as they are produced (on the worker thread), so neither the XML nor
// its compressed form has to be held whole.
class Deflater {
public:
    using Output = std::function<void(QByteArrayView)>;
    struct Result {
        quint32 crc = 0;
        qint64 size = 0; // uncompressed
    };

    // Sheet XML compresses to about a sixth at this level, as fast as level 1
    // compresses it to a fifth (cell references omitted, see SheetWriter).
    static constexpr int DefaultLevel = 3;

    Deflater(int level, Output output);
    ~Deflater();
    Deflater(const Deflater &) = delete;
    Deflater &operator=(const Deflater &) = delete;

    void push(std::string &&chunk);
    // Waits for the last bytes; throws Error when compression failed or the
    // output threw.
    Result finish();

    // A small part at once.
    static QByteArray compress(const QByteArray &data, Result &result);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::string> m_queue;
    bool m_done = false;
    bool m_failed = false;
    std::exception_ptr m_outputError;
    int m_level;
    Output m_output;
    Result m_result;
    std::thread m_worker;
};

} // namespace quorvale::xlsx
