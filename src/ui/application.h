#pragma once

#include "ui/desktop.h"

#include <QApplication>

namespace quorvale {

// The desktop program's application object. An error that no procedure
// traps must not unwind through Qt's event loop: notify() stops it and hands
// it to the run-time error report of the desktop, which ends the process.
class Application : public QApplication {
  public:
    Application(int &argc, char **argv, DesktopPtr desktop);

    const DesktopPtr &desktop() const { return m_desktop; }
    bool notify(QObject *receiver, QEvent *event) override;

  private:
    DesktopPtr m_desktop;
};

// Sets the program's name, the UI font with Chinese glyphs, and Qt's own
// texts (dialog buttons, file and print dialogs, calendars) in Chinese,
// whatever the system's language: the program's language is Chinese.
void setUpApplication(QApplication &app);

} // namespace quorvale
