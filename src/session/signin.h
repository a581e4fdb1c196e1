#pragma once

#include "session/postchoice.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

namespace quorvale {

struct Session;

// The sign-in checks without a window, shared by the login window and the
// batch export so that both accept and refuse exactly the same users.

// A refusal: the box the login window shows (and the batch export prints).
struct SignInRefusal {
    QString message;
    int style = 0;
};

struct SignInResult {
    enum class Kind { Refused, SuperUser, Posts };
    Kind kind = Kind::Refused;
    SignInRefusal refusal;   // Refused
    QList<PostChoice> posts; // Posts: one per List1 entry, in the server's order
    QStringList listTexts;   // Posts: the List1 entries
};

// The checks made before any connection: both texts must be typed.
bool checkTypedCredentials(const QString &userText, const QString &passwordText,
                           SignInRefusal &refusal);

// On the session's open connection: the built-in super-user (which sets
// CurUserNo), then the employee check, then the user's current posts.
// Database errors are thrown.
SignInResult verifyCredentials(Session &session, const QString &userText,
                               const QString &passwordText);

// The last step of every sign-in (the login window's, a command-line
// session's, the batch's): the post's project-management audit right looked
// up on the session's connection, a session that never connected given an
// unopened connection, and the session made unchangeable. The lookup's
// database errors are thrown.
std::shared_ptr<const Session> signIn(Session session);

} // namespace quorvale
