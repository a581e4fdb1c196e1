#pragma once

#include <QString>

class QSqlError;

namespace quorvale {

// The most specific text of a driver error: the server's own words when it
// gave any, the driver's otherwise.
QString sqlErrorText(const QSqlError &error);

} // namespace quorvale
