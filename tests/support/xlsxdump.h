#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace quorvale::testing {

// Reads a workbook back with an independent reader (openpyxl under Debian's
// /usr/bin/python3): sheets, cells with types, formats, fonts, alignment,
// borders, widths, merges, and every zip entry's content hash. Throws (so
// the test fails) when the reader is missing or cannot read the file. Each
// sheet's charts are listed with the cells their series refer to.
QJsonObject dumpWorkbook(const QString &path);
// One sheet of a dump, and that sheet's cells keyed by reference ("A1").
QJsonObject sheetOf(const QJsonObject &dump, const QString &sheet);
QJsonObject cellsOf(const QJsonObject &dump, const QString &sheet);
// A zip entry's text as the dump holds it ("" for a large one).
QString entryText(const QJsonObject &dump, const QString &part);

// Writes an existing-style workbook (three sheets, chart, formulas, calc
// chain, defined name, merges, conditional format, custom part).
void makeWorkbookFixture(const QString &path);
// The same with sheet "Other" hidden and a chart sheet "图表" after the worksheets.
void makeWorkbookFixtureWithChartSheet(const QString &path);
// Sheets A, B and C; a name local to A, a print area of C, C the active sheet.
void makeLocalNamesFixture(const QString &path);
// A one-sheet workbook ("Ledger") written the way other tools write: prefixed
// elements, rows and cells without references, rich text, a custom format.
void makePrefixedWorkbookFixture(const QString &path);

// Runs another command of the reader tool (damage-…, note …) on a workbook.
void runWorkbookTool(const QStringList &arguments);

} // namespace quorvale::testing
