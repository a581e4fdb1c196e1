#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace quorvale::testing {

// Opens workbooks with LibreOffice headless (Debian's libreoffice-calc-nogui),
// a second reader besides openpyxl, and returns every sheet's cells as
// LibreOffice shows them, keyed by "FILE-BASE-NAME/SHEET". All files go
// through one LibreOffice run in a temporary profile. Throws (so the test
// fails) when LibreOffice is missing or converts nothing.
QMap<QString, QList<QStringList>> libreOfficeSheets(const QStringList &workbooks);

// The file converted by LibreOffice headless with the filter (e.g.
// "xls:MS Excel 97") into the folder; returns the new file's path.
QString convertWithLibreOffice(const QString &file, const QString &filter, const QString &folder);

} // namespace quorvale::testing
