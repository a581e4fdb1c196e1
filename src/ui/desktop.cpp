#include "ui/desktop.h"

#include "runtime/programinfo.h"

namespace quorvale {

int Desktop::msgBox(const QString &prompt, int style, const QString &title) const
{
    const MsgBoxCall call{prompt, style, title.isEmpty() ? programTitle() : title};
    return answerBox ? answerBox(call) : showMsgBox(call);
}

void Desktop::end(int status) const
{
    if (endProgram)
        endProgram(status);
    else
        endProgramNow(status);
}

QDate Desktop::date() const
{
    return today ? today() : QDate::currentDate();
}

UnhandledErrors Desktop::unhandledErrors() const
{
    // Copies: the handler may outlive this call, not the desktop.
    return {[desktop = *this](const QString &text) { desktop.msgBox(text, vb::Critical); },
            [desktop = *this](int status) { desktop.end(status); }};
}

} // namespace quorvale
