#pragma once

// The benchmarks' view of their own memory, from /proc (Linux).

#include <QByteArray>
#include <QFile>

namespace quorvale::bench {

// A "Vm…:" line of /proc/self/status in KiB, -1 when unreadable.
inline long statusKiB(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(int(qstrlen(key))).trimmed().split(' ').first().toLong();
    }
    return -1;
}

inline long residentKiB()
{
    return statusKiB("VmRSS:");
}

inline long peakKiB()
{
    return statusKiB("VmHWM:");
}

// Writing 5 to clear_refs restarts the high-water mark at the present size,
// so a step's peak excludes what came before it.
inline void resetPeak()
{
    QFile refs(QStringLiteral("/proc/self/clear_refs"));
    if (refs.open(QIODevice::WriteOnly))
        refs.write("5");
}

} // namespace quorvale::bench
