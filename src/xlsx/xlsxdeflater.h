#pragma once

#include <QByteArray>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace quorvale::xlsx {

// Raw deflate of one zip entry on a worker thread, so that generating the XML
// and compressing it overlap on two cores.
class Deflater {
public:
    struct Result {
        QByteArray compressed;
        quint32 crc = 0;
        qint64 size = 0;
    };

    explicit Deflater(int level);
    ~Deflater();
    Deflater(const Deflater &) = delete;
    Deflater &operator=(const Deflater &) = delete;

    void push(std::string &&chunk);
    Result finish();

    static Result compress(const QByteArray &data, int level);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::string> m_queue;
    bool m_done = false;
    bool m_failed = false;
    int m_level;
    Result m_result;
    std::thread m_worker;
};

} // namespace quorvale::xlsx
