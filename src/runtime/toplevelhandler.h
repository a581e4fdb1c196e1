#pragma once

#include "runtime/runtimeerror.h"

#include <QString>
#include <functional>

namespace quorvale {

// The text of the run-time error box: number, blank line, description.
QString runtimeErrorText(int number, const QString &description);

// Where the run-time error text goes: a message box in the desktop program
// (installed by the UI layer), standard error until something is installed.
using UnhandledErrorBox = std::function<void(const QString &text)>;
void setUnhandledErrorBox(UnhandledErrorBox box);

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
