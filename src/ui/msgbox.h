#pragma once

#include "runtime/msgboxstyle.h"
#include "runtime/programinfo.h"

#include <QString>
#include <functional>

namespace quorvale {

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
