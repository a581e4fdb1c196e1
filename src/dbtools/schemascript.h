#pragma once

#include <QString>
#include <QStringList>

namespace quorvale {

class Connection;

// The schema script shipped as the resource ":/sql/schema.sql".
QString schemaScript();

// Splits a script at lines holding only GO (any case, blanks around it), as
// sqlcmd does; batches holding nothing but blanks and comments are dropped.
QStringList scriptBatches(const QString &script);

// Creates every table and index of the schema on an open connection.
void createSchema(Connection &connection);

} // namespace quorvale
