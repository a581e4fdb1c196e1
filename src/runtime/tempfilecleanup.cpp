#include "runtime/tempfilecleanup.h"

#include <QFile>

#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <mutex>
#ifndef Q_OS_WIN
#include <pthread.h>
#include <unistd.h>
#endif

namespace quorvale {

namespace {

// The handler may only touch plain memory and call async-signal-safe
// functions, so paths live in fixed slots that are published atomically.
constexpr int kSlots = 64;
constexpr int kPathBytes = 4096;
struct Slot {
    std::atomic<bool> used{false};
    char path[kPathBytes];
};
std::array<Slot, kSlots> g_slots;
std::mutex g_mutex;

void removeAndExit(int signal)
{
    for (Slot &slot : g_slots)
        if (slot.used.load())
#ifdef Q_OS_WIN
            std::remove(slot.path);
#else
            ::unlink(slot.path);
#endif
#ifdef Q_OS_WIN
    std::_Exit(128 + signal);
#else
    ::_exit(128 + signal);
#endif
}

} // namespace

void registerTemporaryFile(const QString &path)
{
    const QByteArray bytes = QFile::encodeName(path);
    if (bytes.size() >= kPathBytes)
        return;
    const std::lock_guard lock(g_mutex);
    for (Slot &slot : g_slots) {
        if (slot.used.load())
            continue;
        std::memcpy(slot.path, bytes.constData(), size_t(bytes.size()) + 1);
        slot.used.store(true);
        return;
    }
}

void unregisterTemporaryFile(const QString &path)
{
    const QByteArray bytes = QFile::encodeName(path);
    const std::lock_guard lock(g_mutex);
    for (Slot &slot : g_slots)
        if (slot.used.load() && bytes == slot.path) {
            slot.used.store(false);
            return;
        }
}

void installCleanupOnSignals()
{
#ifdef Q_OS_WIN
    std::signal(SIGINT, removeAndExit);
    std::signal(SIGTERM, removeAndExit);
#else
    struct sigaction action {};
    action.sa_handler = removeAndExit;
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
#endif
}

DeferredSignals::DeferredSignals()
{
#ifndef Q_OS_WIN
    static_assert(sizeof(sigset_t) <= sizeof(m_saved));
    sigset_t blocked;
    sigemptyset(&blocked);
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&blocked, signal);
    pthread_sigmask(SIG_BLOCK, &blocked, reinterpret_cast<sigset_t *>(m_saved));
#endif
}

DeferredSignals::~DeferredSignals()
{
#ifndef Q_OS_WIN
    pthread_sigmask(SIG_SETMASK, reinterpret_cast<const sigset_t *>(m_saved), nullptr);
#endif
}

} // namespace quorvale
