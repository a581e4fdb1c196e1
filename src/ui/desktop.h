#pragma once

#include "runtime/msgboxstyle.h"
#include "runtime/toplevelhandler.h"
#include "ui/msgbox.h"

#include <QDate>
#include <QString>
#include <functional>
#include <memory>

class QWidget;

namespace quorvale {

class Printer;

// How the windows meet the person at the desk and the desktop around the
// program: message boxes, the end of the program, today's date, the save
// dialog, opening a written file, the printer. Each is the real thing
// unless set. The program leaves them all unset; a test sets them to answer
// and record. The program's start builds one and hands it to the windows
// with the session.
struct Desktop {
    // Answers a box instead of showing it, with the button pressed.
    std::function<int(const MsgBoxCall &call)> answerBox;
    // Records the end instead of ending: the call returns.
    std::function<void(int status)> endProgram;
    std::function<QDate()> today;
    // Picks a workbook to save into, instead of the save dialog.
    std::function<QString(QWidget *parent, const QString &folder, const QString &filter)>
        saveFileName;
    // Opens a written file, instead of the desktop's program for it; false
    // when nothing could open it.
    std::function<bool(const QString &path)> openFile;
    // Prints on a printer of its own instead of through the print preview.
    std::function<void(const std::function<void(Printer &printer)> &print)> printer;

    // A modal box; an empty title means the program title.
    int msgBox(const QString &prompt, int style = vb::OKOnly,
               const QString &title = QString()) const;
    // Ends the program at once, as the classic End statement does.
    void end(int status) const;
    QDate date() const;
    // An error nothing trapped: its box, then the end.
    UnhandledErrors unhandledErrors() const;
};

using DesktopPtr = std::shared_ptr<const Desktop>;

} // namespace quorvale
