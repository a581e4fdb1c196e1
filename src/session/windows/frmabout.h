#pragma once

#include "ui/desktop.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace quorvale {

// The About window "frmAbout": the program's version and a button that
// starts the system-information tool.
class FrmAbout : public QWidget {
    Q_OBJECT
  public:
    explicit FrmAbout(DesktopPtr desktop, QWidget *parent = nullptr);

    QLabel *label7() const { return m_label7; }

  protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

  private:
    DesktopPtr m_desktop;
    QLabel *m_label7;
    QPushButton *m_cmdOK;
    QPushButton *m_cmdSysInfo;
    bool m_centred = false;
};

// Starts the system-information tool found in the registry, or says that
// it is not available.
void StartSysInfo(const Desktop &desktop);

} // namespace quorvale
