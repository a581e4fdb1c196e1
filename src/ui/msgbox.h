#pragma once

#include "runtime/msgboxstyle.h"
#include "runtime/programinfo.h"

#include <QString>

namespace quorvale {

struct MsgBoxCall {
    QString prompt;
    int style = 0;
    QString title; // the title actually shown (the program title when none was given)
};

// Shows the modal box and returns the button pressed. Windows show their
// boxes through their Desktop, which a test answers instead.
int showMsgBox(const MsgBoxCall &call);

} // namespace quorvale
