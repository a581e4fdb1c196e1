#include "db/sqlscript.h"

#include "db/connection.h"
#include "db/sqlerrortext.h"
#include "runtime/runtimeerror.h"
#include "tsql/tsqladapter.h"
#include "tsql/tsqlbatches.h"
#include "tsql/tsqlerror.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

namespace quorvale {

namespace {

// A failure inside one batch: the text and the batch's character position
// it points to (0: the batch as a whole).
struct BatchFailure {
    QString message;
    int position = 0;
};

void readRows(QSqlQuery &query, const QList<TsqlColumn> &columns, SqlResultSink &sink)
{
    sink.beginRows(columns);
    QList<Field> fields;
    while (query.next()) {
        fields.clear();
        for (qsizetype i = 0; i < columns.size(); ++i)
            fields.append(Field(columns.at(i).name, query.value(int(i)), columns.at(i).kind));
        sink.row(fields);
    }
    if (query.lastError().isValid())
        throw BatchFailure{sqlErrorText(query.lastError())};
    sink.endRows();
}

void runEmbeddedBatch(Connection &connection, const QString &batch, SqlResultSink &sink)
{
    const auto run = [&](const TsqlStatement &st) {
        if (st.sql.isEmpty())
            return;
        QSqlQuery query(connection.database());
        query.setForwardOnly(true);
        if (!query.exec(st.sql))
            throw BatchFailure{sqlErrorText(query.lastError()), st.position};
        if (st.returnsRows)
            readRows(query, st.columns, sink);
        else if (st.changesRows)
            sink.rowsAffected(query.numRowsAffected());
    };
    try {
        connection.adapter()->translateBatch(batch, run);
    } catch (const TsqlError &e) {
        throw BatchFailure{e.text(), e.position()};
    }
}

void runServerBatch(Connection &connection, const QString &batch, SqlResultSink &sink)
{
    QSqlQuery query(connection.database());
    query.setForwardOnly(true);
    // Decimals and money as exact text, as the recordsets read them.
    query.setNumericalPrecisionPolicy(QSql::HighPrecision);
    if (!query.exec(batch))
        throw BatchFailure{sqlErrorText(query.lastError())};
    do {
        if (query.isSelect()) {
            const QSqlRecord record = query.record();
            QList<TsqlColumn> columns;
            for (int i = 0; i < record.count(); ++i)
                columns.append(TsqlColumn{record.fieldName(i),
                                          fieldKindOfMetaType(record.field(i).metaType().id())});
            readRows(query, columns, sink);
        } else if (query.numRowsAffected() >= 0) {
            sink.rowsAffected(query.numRowsAffected());
        }
    } while (query.nextResult());
}

} // namespace

void runSqlScript(Connection &connection, const QString &script, SqlResultSink &sink)
{
    if (!connection.isOpen())
        throw RuntimeError(ErrorNumber::DatabaseError,
                           QStringLiteral("The connection is not open."));
    const bool embedded = connection.isEmbedded();
    QSqlDatabase db = connection.database();
    if (embedded && !db.transaction())
        throw RuntimeError(ErrorNumber::DatabaseError, sqlErrorText(db.lastError()));
    const auto rollBack = [&] {
        if (!embedded)
            return;
        db.rollback();
        // Tables the script created or dropped are back as they were.
        connection.adapter()->catalog().invalidate();
    };
    for (const TsqlBatch &batch : tsqlBatches(script)) {
        try {
            if (embedded)
                runEmbeddedBatch(connection, batch.text, sink);
            else
                runServerBatch(connection, batch.text, sink);
        } catch (const BatchFailure &failure) {
            rollBack();
            throw RuntimeError(ErrorNumber::DatabaseError, QStringLiteral("batch %1, line %2: %3")
                                                               .arg(batch.number)
                                                               .arg(batch.lineOf(failure.position))
                                                               .arg(failure.message));
        } catch (...) {
            rollBack();
            throw;
        }
    }
    if (embedded && !db.commit()) {
        const QString text = sqlErrorText(db.lastError());
        rollBack();
        throw RuntimeError(ErrorNumber::DatabaseError, text);
    }
}

} // namespace quorvale
