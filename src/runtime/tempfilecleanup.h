#pragma once

#include <QString>

namespace quorvale {

// Temporary files that must not outlive the process: an output half-written
// when the user presses Ctrl-C or a scheduler stops the run. Registered
// paths are removed by the signal handlers that installCleanupOnSignals()
// sets up for SIGINT, SIGTERM and SIGHUP, which then end the process with
// 128 + the signal number (130, 143, 129); on Windows by a console handler
// (Ctrl-C and Ctrl-Break end it with 130, a closed console or a logoff 129).
void registerTemporaryFile(const QString &path);
void unregisterTemporaryFile(const QString &path);
void installCleanupOnSignals();

// Holds those signals back while it lives, for a step that creates a file
// and registers it: a signal in between would leave the file behind.
class DeferredSignals {
  public:
    DeferredSignals();
    ~DeferredSignals();
    DeferredSignals(const DeferredSignals &) = delete;
    DeferredSignals &operator=(const DeferredSignals &) = delete;

  private:
    unsigned char m_saved[128];
};

} // namespace quorvale
