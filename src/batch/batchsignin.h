#pragma once

#include "batch/reportlookup.h"
#include "reports/officelist.h"
#include "session/session.h"

#include <QList>
#include <QString>

namespace quorvale {

// Reads the four settings, connects once and signs in with the login
// window's checks; a user with several posts names one. Throws
// RefusedError when the login window would refuse, RuntimeError when the
// settings are missing or the database fails.
SessionPtr signInForBatch(const QString &user, const QString &password, const QString &post);

// The offices the report window's list offers the session's post, in its order.
QList<OfficeItem> listedOffices(const Session &session, const ReportEntry &report);

} // namespace quorvale
