#pragma once

#include "db/sqlscript.h"

#include <QStringList>
#include <QTextStream>

namespace quorvale {

// Query results as aligned text columns for a person to read: numbers to the
// right, NULL as "NULL", Chinese characters two columns wide. Widths come
// from the first rows, so a long result streams instead of being held.
class TablePrinter : public SqlResultSink {
  public:
    explicit TablePrinter(QTextStream &out) : m_out(out) {}

    void beginRows(const QList<TsqlColumn> &columns) override;
    void row(const QList<Field> &fields) override;
    void endRows() override;
    void rowsAffected(qint64 count) override;

    static constexpr int rowsMeasured = 1000;

  private:
    void printHead();
    void printLine(const QStringList &texts);

    QTextStream &m_out;
    QList<TsqlColumn> m_columns;
    QList<int> m_widths;
    QList<QStringList> m_held;
    qint64 m_rows = 0;
    bool m_headPrinted = false;
};

} // namespace quorvale
