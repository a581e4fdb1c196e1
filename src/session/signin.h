#pragma once

#include "session/postchoice.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvale {

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

// Clears nine of the ten session values before a sign-in attempt; the user's
// name keeps whatever it held.
void clearSessionForSignIn();

// On the open shared connection: the built-in super-user (which sets
// CurUserNo), then the employee check, then the user's current posts.
// Database errors are thrown.
SignInResult verifyCredentials(const QString &userText, const QString &passwordText);

} // namespace quorvale
