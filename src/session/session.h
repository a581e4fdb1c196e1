#pragma once

// Library session: who is signed in, without a window: the Session value,
// the connection it opens, the sign-in checks, the command-line session and
// the post's rights. It needs the db and runtime libraries; no widgets.

#include "db/connection.h"
#include "session/postchoice.h"

#include <QString>
#include <QStringList>
#include <memory>

namespace quorvale {

// Who is signed in, as sign-in leaves it for everyone else: the ten values
// under their designed names and in their fixed order (the command line's),
// the project-management audit right that decides which offices the reports
// list, and the one connection of the process.
struct Session {
    QString CurUserNo;
    QString CurUserName;
    QString CurDeptCode;
    QString CurDeptName;
    QString CurPostCode;
    QString CurPostName;
    QString CurDeptClassCode;
    QString CurDeptClassName;
    QString CurPostClassCode;
    QString CurPostClassName;
    bool HasProjectAudit = false;
    ConnectionPtr DbConn;

    static constexpr int ValueCount = 10;
    // The ten values in their fixed order.
    QString &value(int index);
    const QString &value(int index) const { return const_cast<Session *>(this)->value(index); }

    // The first ten comma-separated fields, untrimmed; fewer than ten raise
    // error 9.
    static Session fromCommandLine(const QString &startupArgs);
    // A chosen post, each value trimmed.
    void takePost(const PostChoice &choice);
    // Clears nine of the ten values before a sign-in attempt; the user's name
    // keeps whatever it held.
    void clearForSignIn();
    // The session's connection: a signed-in session always has one (one that
    // never connected has an unopened connection, whose queries then report
    // the closed connection).
    const ConnectionPtr &connection() const { return DbConn; }
};

// A signed-in session, as every window and the batch see it: it does not
// change after sign-in.
using SessionPtr = std::shared_ptr<const Session>;

// The command-line text: the program's arguments after its name, joined
// with blanks.
QString commandLineText(const QStringList &arguments);
// The command line the login window is given: anyone who can start the
// program can pass a session this way, so an administrator may close that
// door with AllowCommandLineSession=0 in the DBConfig settings (absent or 1:
// the command line is honoured); closed, the login window shows.
QString sessionCommandLine(const QStringList &arguments);

} // namespace quorvale
