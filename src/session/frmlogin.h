#pragma once

#include "session/postchoice.h"

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
// table, lets him pick one of his current posts and fills the session values.
class FrmLogin : public QWidget {
    Q_OBJECT
  public:
    explicit FrmLogin(QWidget *parent = nullptr);
    ~FrmLogin() override;

    // The loaded login window, if any.
    static FrmLogin *instance();

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
};

// Unloads the login window if it is still loaded.
void unloadLoginWindow();

// The command-line text: the program's arguments after its name, joined
// with blanks.
QString commandLineText(const QStringList &arguments);

// The command line the login window is given: anyone who can start the
// program can pass a session this way, so an administrator may close that
// door with AllowCommandLineSession=0 in the DBConfig settings (absent or 1:
// the command line is honoured); closed, the login window shows.
QString sessionCommandLine(const QStringList &arguments);

// Copies the first ten comma-separated fields, untrimmed, into the session
// values; fewer than ten raise error 9.
void sessionFromCommandLine(const QString &startupArgs);

// Copies a chosen post, each value trimmed, into the session values.
void sessionFromPostChoice(const PostChoice &choice);

} // namespace quorvale
