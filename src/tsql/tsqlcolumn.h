#pragma once

#include "tsql/fieldkind.h"

#include <QString>

namespace quorvale {

// A result column of a translated query: its name as the caller sees it and
// what it holds, so Field::text() can render it.
struct TsqlColumn {
    QString name;
    FieldKind kind = FieldKind::Text;
};

} // namespace quorvale
