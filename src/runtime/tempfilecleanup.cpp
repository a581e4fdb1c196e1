#include "runtime/tempfilecleanup.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <mutex>
#include <string>
#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <pthread.h>
#include <unistd.h>
#endif

namespace quorvale {

namespace {

// The handler may only touch plain memory and call async-signal-safe
// functions, so paths live in fixed slots that are published atomically.
// Windows paths are kept wide: the 8-bit code page cannot spell every name.
#ifdef Q_OS_WIN
using PathChar = wchar_t;
#else
using PathChar = char;
#endif
constexpr int kSlots = 64;
constexpr int kPathChars = 4096;
struct Slot {
    std::atomic<bool> used{false};
    PathChar path[kPathChars];
};
std::array<Slot, kSlots> g_slots;
std::mutex g_mutex;

std::basic_string<PathChar> systemPath(const QString &path)
{
#ifdef Q_OS_WIN
    return QDir::toNativeSeparators(path).toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}

void removeRegistered()
{
    for (Slot &slot : g_slots)
        if (slot.used.load())
#ifdef Q_OS_WIN
            DeleteFileW(slot.path);
#else
            ::unlink(slot.path);
#endif
}

#ifdef Q_OS_WIN
// Windows calls the console handler on a thread of its own, so a deferred
// step is simply waited for.
std::atomic<int> g_deferring{0};

BOOL WINAPI removeAndExitOnConsoleEvent(DWORD event)
{
    while (g_deferring.load() > 0)
        Sleep(5);
    removeRegistered();
    // The exit statuses of the matching Unix signals: Ctrl-C and Ctrl-Break
    // as SIGINT, a closed console, a logoff or a shutdown as SIGHUP.
    const bool interrupted = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    ExitProcess(interrupted ? 128 + SIGINT : 129);
}
#else
void removeAndExit(int signal)
{
    removeRegistered();
    ::_exit(128 + signal);
}
#endif

} // namespace

void registerTemporaryFile(const QString &path)
{
    const auto native = systemPath(path);
    if (native.size() >= size_t(kPathChars))
        return;
    const std::lock_guard lock(g_mutex);
    for (Slot &slot : g_slots) {
        if (slot.used.load())
            continue;
        std::copy(native.c_str(), native.c_str() + native.size() + 1, slot.path);
        slot.used.store(true);
        return;
    }
}

void unregisterTemporaryFile(const QString &path)
{
    const auto native = systemPath(path);
    const std::lock_guard lock(g_mutex);
    for (Slot &slot : g_slots)
        if (slot.used.load() && native == slot.path) {
            slot.used.store(false);
            return;
        }
}

void installCleanupOnSignals()
{
#ifdef Q_OS_WIN
    SetConsoleCtrlHandler(removeAndExitOnConsoleEvent, TRUE);
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
#ifdef Q_OS_WIN
    ++g_deferring;
#else
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
#ifdef Q_OS_WIN
    --g_deferring;
#else
    pthread_sigmask(SIG_SETMASK, reinterpret_cast<const sigset_t *>(m_saved), nullptr);
#endif
}

} // namespace quorvale
