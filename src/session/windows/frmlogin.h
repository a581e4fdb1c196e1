#pragma once

#include "session/postchoice.h"
#include "session/session.h"
#include "session/windows/mdiform1.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace quorvale {

// The start-up window "frmLogin": signs a user in against the employee
// table, lets him pick one of his current posts and fills the session, which
// it hands to the main window with the windows its menu opens; then it goes.
class FrmLogin : public QWidget {
    Q_OBJECT
  public:
    explicit FrmLogin(DesktopPtr desktop, WindowFactories windows = {}, QWidget *parent = nullptr);
    ~FrmLogin() override;

    // Window load. With a command line the session comes from it and the main
    // window is shown instead; returns true when this window is to be shown.
    // Fewer than ten fields raise error 9, which nothing traps.
    bool load(const QString &commandLineText);

    // cmdOK: the checks, the connection, the employee and post queries.
    void signIn();
    // cmdCancel: ends the program at once.
    void cancel();
    // List1 double-click: takes the post at the list's current row.
    void choosePost();

    const QList<PostChoice> &postChoices() const { return m_postChoices; }
    // The session this window signs in: what the main window will be given.
    const Session &session() const { return m_session; }
    Session &session() { return m_session; }

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void showPostList(bool visible);
    void showMainWindow();

    QLineEdit *m_txtUser;
    QLineEdit *m_txtPassword;
    QPushButton *m_cmdOK;
    QPushButton *m_cmdCancel;
    QListWidget *m_list1;
    QLabel *m_label2;
    QLabel *m_label1;
    QList<PostChoice> m_postChoices;
    Session m_session;
    DesktopPtr m_desktop;
    WindowFactories m_windows;
};

} // namespace quorvale
