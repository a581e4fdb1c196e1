#pragma once

#include "db/sqlscript.h"

#include <QTextStream>

namespace quorvale {

// Query results as RFC 4180 CSV (UTF-8, CRLF, a header row): NULL is an
// empty field and an empty text a quoted one (""), as PostgreSQL's COPY and
// quorvale-admin import read them. Several results are separated by a blank
// line; counts of rows affected go to `notes`, keeping the data clean.
class CsvPrinter : public SqlResultSink {
  public:
    CsvPrinter(QTextStream &out, QTextStream &notes) : m_out(out), m_notes(notes) {}

    void beginRows(const QList<TsqlColumn> &columns) override;
    void row(const QList<Field> &fields) override;
    void endRows() override;
    void rowsAffected(qint64 count) override;

  private:
    QTextStream &m_out;
    QTextStream &m_notes;
    int m_results = 0;
};

// One field as CSV writes it: quoted when it holds a comma, quote, line
// break, leading or trailing blank, or is empty.
QString csvField(const QString &text);

} // namespace quorvale
