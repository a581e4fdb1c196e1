#pragma once

#include "tsql/fieldkind.h"

#include <QList>
#include <QString>

namespace quorvale {

// A table of the embedded database as the dialect adapter sees it: the
// declared SQL Server type of every column tells what the column holds.
struct TsqlTable {
    struct Column {
        QString name;
        QString type; // declared type, e.g. "nvarchar(50)", "datetime"
        FieldKind kind = FieldKind::Text;
        bool identity = false; // filled by the engine; left out of an INSERT without a column list
        bool notNull = false;
    };
    QString name;
    QList<Column> columns;

    // Column index by name, ignoring case; -1 when absent.
    int indexOf(const QString &column) const
    {
        for (int i = 0; i < columns.size(); ++i)
            if (columns.at(i).name.compare(column, Qt::CaseInsensitive) == 0)
                return i;
        return -1;
    }
};

// What a declared SQL Server type holds.
FieldKind fieldKindOfType(const QString &declaredType);

} // namespace quorvale
