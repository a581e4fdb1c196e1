#pragma once

#include "tsql/tsqltable.h"

#include <QHash>
#include <QString>
#include <memory>

namespace quorvale {

// Tables and columns of one embedded database, read lazily from SQLite and
// dropped whenever a statement changes the schema.
class TsqlCatalog {
  public:
    explicit TsqlCatalog(QString connectionName);

    // nullptr when the database has no such table (name ignores ASCII case).
    const TsqlTable *table(const QString &name);
    void invalidate();

  private:
    QString m_connectionName;
    QHash<QString, std::shared_ptr<TsqlTable>> m_tables; // key: lower-case name
};

} // namespace quorvale
