#pragma once

#include "runtime/programinfo.h"

#include <QString>
#include <functional>

namespace quorvale {

// Style numbers and answers of the classic message box.
namespace vb {
inline constexpr int OKOnly = 0;
inline constexpr int YesNo = 4;
inline constexpr int Critical = 16;
inline constexpr int Question = 32;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;

inline constexpr int OK = 1;
inline constexpr int Cancel = 2;
inline constexpr int Yes = 6;
inline constexpr int No = 7;
} // namespace vb

struct MsgBoxCall {
    QString prompt;
    int style = 0;
    QString title; // the title actually shown (the program title when none was given)
};

// A responder replaces the real dialog: it sees each box and returns the
// button pressed. Tests install one to record and answer every message.
using MsgBoxResponder = std::function<int(const MsgBoxCall &)>;
void setMsgBoxResponder(MsgBoxResponder responder);

// The run-time error box of an error nothing trapped becomes a message box
// (through the responder, so tests see it too).
void showUnhandledErrorsInMsgBox();

// Shows a modal box; an empty title means the program title.
int MsgBox(const QString &prompt, int style = vb::OKOnly, const QString &title = QString());

} // namespace quorvale
