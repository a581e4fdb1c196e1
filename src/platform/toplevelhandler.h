#pragma once

#include "platform/runtimeerror.h"

#include <QString>
#include <functional>

namespace quorvale {

// The text of the run-time error box: number, blank line, description.
QString runtimeErrorText(int number, const QString &description);

// Shows the run-time error box for an error nothing trapped, then ends the
// process with a non-zero status.
void reportUnhandledError(const RuntimeError &error);

// Inside a catch block: reports the error being handled as unhandled.
void reportCurrentException();

// Runs a piece of start-up or event code; any error escaping it is reported
// as unhandled. Returns false when an error was reported.
bool runGuarded(const std::function<void()> &code);

// Ends the process at once (no closing questions, no unloading), as the
// classic End statement does.
[[noreturn]] void endProgramNow(int status);
// Ends the program through the installed hook. Tests install one that
// records the status instead of ending the test process; with a hook the
// call returns.
void endProgram(int status);
using EndProgramHook = std::function<void(int status)>;
void setEndProgramHook(EndProgramHook hook);

} // namespace quorvale
