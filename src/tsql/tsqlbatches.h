#pragma once

#include <QList>
#include <QString>

namespace quorvale {

// One batch of a T-SQL script and where it starts, so an error inside it can
// name the script's line.
struct TsqlBatch {
    QString text;
    int firstLine = 1; // 1-based line of the script on which the batch's text starts
    int number = 1;    // 1-based count of the batches that hold something

    // The script line of a 1-based character position in the batch's text;
    // for 0, the line of its first statement.
    int lineOf(int position) const;
};

// Splits a script at lines holding only GO (any case, blanks around it), as
// SQL Server's own tools do. Batches holding nothing but blanks are dropped.
QList<TsqlBatch> tsqlBatches(const QString &script);

} // namespace quorvale
