#pragma once

#include "runtime/runtimeerror.h"

#include <QString>
#include <functional>

namespace quorvale {

// The text of the run-time error box: number, blank line, description.
QString runtimeErrorText(int number, const QString &description);

// What becomes of an error nothing trapped: its run-time error text is shown,
// then the program ends with status 1. The desktop program shows a message
// box and ends; a test records both.
struct UnhandledErrors {
    std::function<void(const QString &text)> show; // standard error when unset
    std::function<void(int status)> end;           // endProgramNow when unset
};

// Shows the run-time error box for an error nothing trapped, then ends.
void reportUnhandledError(const RuntimeError &error, const UnhandledErrors &handler);

// Inside a catch block: reports the error being handled as unhandled.
void reportCurrentException(const UnhandledErrors &handler);

// Runs a piece of start-up or event code; any error escaping it is reported
// as unhandled. Returns false when an error was reported.
bool runGuarded(const std::function<void()> &code, const UnhandledErrors &handler);

// Ends the process at once (no closing questions, no unloading), as the
// classic End statement does.
[[noreturn]] void endProgramNow(int status);

} // namespace quorvale
