#pragma once

#include "table/reporttable.h"
#include "runtime/printer.h"

#include <QDate>
#include <QFont>
#include <QString>
#include <QVector>
#include <functional>

namespace quorvale {

// What a report window puts above its table: the report title and an
// optional second line such as the date range.
struct PrintTitles {
    QString title;
    QString secondLine;
    QDate printedOn = QDate::currentDate(); // the footer's print date
};

// The company title every printed page starts with.
QString companyTitle();

// The print branch's titles, the same in every report window: "(office)"
// followed by "收款日报表" (a leftover of the first report, kept), and the
// date range line; printed on the day given.
PrintTitles reportPrintTitles(const QString &officeName, const QDate &from, const QDate &to,
                              const QDate &printedOn);

// The look of a grid in the font at the dpi, as the grid lays its rows out.
PrintLook printLookOf(const QFont &font, int dpi);

// The question a window asks when the table is wider than the paper; Yes
// leaves the print, so the user can change the paper first.
QString paperTooNarrowQuestion();
// Whether the printed columns fit the printer's paper.
bool tableFitsPaper(Printer &printer, const ReportTable &table, int trailing);

// Told after each page is drawn: pages done, pages in all.
using PrintProgress = std::function<void(int page, int pageCount)>;

// Pages a document prints after a grid's (the month-end overview's charts),
// with the grid's heading block and footer, counted in its page numbers.
// draw() fills the band between the heading and the footer of each.
struct ExtraPages {
    int count = 0;
    std::function<void(Printer &printer, int index, double top, double bottom)> draw;
};

// Prints rows 1 .. rows-1 of the table, row 0 as the column heading of
// every page, leaving out the last `trailing` columns. signature = true adds
// the signature fields to every footer. It asks nothing: a table wider than
// the paper is printed shifted left (callers ask or warn first, with
// tableFitsPaper). Printer failures throw RuntimeError.
void PrintGrid(Printer &printer, const ReportTable &table, const PrintLook &look,
               const PrintTitles &titles, bool signature, int trailing,
               const PrintProgress &progress = {}, const ExtraPages &extra = {});

// Sets every column's width (twips) to the widest of its cell texts.
void AutoFitColumns(ReportTable &table, const TextWidthFn &textWidth);

} // namespace quorvale
