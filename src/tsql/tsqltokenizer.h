#pragma once

#include "tsql/tsqltoken.h"

#include <QList>
#include <QString>

namespace quorvale {

// Splits T-SQL text into tokens; comments and blanks are dropped. Throws
// TsqlError naming the character and its position for anything else.
class TsqlTokenizer {
  public:
    static QList<TsqlToken> tokenize(const QString &sql);
};

} // namespace quorvale
