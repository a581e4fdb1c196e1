#pragma once

#include <QString>

namespace quorvale {

// The character-string forms SQL Server accepts for a datetime ('2024-03-31',
// '2024/3/5', '20240331', each with or without a time) turned into the
// embedded engine's stored form 'YYYY-MM-DD HH:MM:SS'. Throws TsqlError with
// SQL Server's conversion message for anything else.
QString tsqlDateTimeFromString(const QString &text);

// The message SQL Server gives for an unconvertible datetime string.
QString tsqlDateConversionMessage();

} // namespace quorvale
