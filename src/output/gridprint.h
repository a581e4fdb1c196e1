#pragma once

#include <QFont>
#include <QString>
#include <QVector>
#include <functional>

class QWidget;

namespace quorvale {

class FlexGrid;
class Printer;

// What a report window puts above its table: the report title and an
// optional second line such as the date range.
struct PrintTitles {
    QString title;
    QString secondLine;
};

// Where the printed columns of one grid sit on the paper, in twips.
struct GridPrintTable {
    const FlexGrid *grid = nullptr;
    double left = 0; // negative when the table is wider than the paper
    QVector<double> widths;
    double rowPitch = 0;

    double width() const;
    double columnLeft(int column) const;
};

// Prints rows 1 .. Rows-1 of the grid, row 0 as the column heading of every
// page, leaving out the last `trailing` columns. signature = true adds the
// signature fields to every footer. A table wider than the paper asks first;
// answering Yes prints nothing. Printer failures throw RuntimeError.
void PrintGrid(Printer &printer, const FlexGrid &grid, const PrintTitles &titles, bool signature,
               int trailing);
// The same on the system's default printer.
void PrintGrid(const FlexGrid &grid, const PrintTitles &titles, bool signature, int trailing);
// The same in a print preview window: the width question is asked once,
// before the window opens; Yes opens nothing.
void PreviewGrid(QWidget *parent, const FlexGrid &grid, const PrintTitles &titles, bool signature,
                 int trailing);

// Heading block and column-heading row of one page, from the top of the
// page; returns the y of the table's top rule. The body font stays set.
double PrintPageHeader(Printer &printer, const PrintTitles &titles, const QString &bodyFontName,
                       double bodyFontSize, const GridPrintTable &table);
// Footer of one page; y is the position below the page's last row.
void PrintPageFooter(Printer &printer, double left, double tableWidth, bool signature, int page,
                     int pageCount, double y);

// Sets the heading font and returns its line height.
double LineHeight(Printer &printer);
// Line height in the printer's current font.
double BodyLineHeight(Printer &printer);

// Sets every column's width (twips) to the widest of its cell texts.
void AutoFitColumns(FlexGrid &grid, const QFont &font);
void AutoFitColumns(FlexGrid &grid, const std::function<double(const QString &)> &textWidth);

} // namespace quorvale
