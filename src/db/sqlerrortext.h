#pragma once

#include "runtime/runtimeerror.h"
#include "tsql/tsqlerror.h"

#include <QString>

class QSqlError;

namespace quorvale {

// The most specific text of a driver error: the server's own words when it
// gave any, the driver's otherwise.
QString sqlErrorText(const QSqlError &error);

// The embedded engine's refusals reach the windows as database errors, with
// the text the server would have given.
template <class Code>
decltype(auto) asDatabaseError(Code &&code)
{
    try {
        return code();
    } catch (const TsqlError &e) {
        throw RuntimeError(ErrorNumber::DatabaseError, e.text());
    }
}

} // namespace quorvale
