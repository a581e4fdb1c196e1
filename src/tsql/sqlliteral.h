#pragma once

#include <QString>

namespace quorvale {

// A value as it goes between single quotes of a statement: each quote
// doubled, so text without a quote is spliced exactly as it stands.
QString sqlQuoted(const QString &value);

} // namespace quorvale
