// Workbook export timings: a report grid of text cells written with the
// export window's calls (values, widths, header alignment, borders, font
// sizes) by our workbook layer; bench_xlsx_lxw writes the same with
// libxlsxwriter.
//
// Usage:
//   bench_xlsx new  ROWS COLS OUT
//   bench_xlsx into ROWS COLS BOOK SHEET   (writes into BOOK in place)
// Prints "seconds <export time>"; peak memory is measured by the caller.

#include "runtime/outputset.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"
#include "xlsxbenchdata.h"

#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace quorvale::xlsx;
using quorvale::OutputSet;
using quorvale::bench::cellText;

namespace {

// The export's calls; formats come first, since rows are written out as they come.
void exportOurs(Worksheet &sheet, int rows, int cols)
{
    for (int c = 1; c <= cols; ++c)
        sheet.setColumnWidth(c, 1200 / 100.0);
    sheet.setRowHorizontalAlignment(1, 3);
    sheet.setRowVerticalAlignment(1, 5);
    sheet.setRangeBorders(1, 1, rows, cols);
    sheet.setRowFontSize(1, 14);
    sheet.setRowFontSize(2, 10);
    sheet.setRowFontSize(3, 10);
    sheet.setRangeFontSize(4, 1, rows, cols, 10.5);
    for (int r = 1; r <= rows; ++r)
        for (int c = 1; c <= cols; ++c)
            sheet.setCellValue(r, c, cellText(r, c));
}

// Saved as the export saves: staged beside the target, synced, renamed.
void save(Workbook &book)
{
    OutputSet outputs;
    book.write(outputs.add(book.path()).device());
    outputs.commit();
}

int runOursNew(int rows, int cols, const char *out)
{
    QElapsedTimer timer;
    timer.start();
    auto book = Workbook::create(QString::fromLocal8Bit(out));
    exportOurs(book->worksheet(1), rows, cols);
    save(*book);
    std::printf("seconds %.3f\n", timer.elapsed() / 1000.0);
    return 0;
}

int runOursInto(int rows, int cols, const char *path, const char *sheetName)
{
    QElapsedTimer timer;
    timer.start();
    auto book = Workbook::open(QString::fromLocal8Bit(path));
    const QString name = QString::fromUtf8(sheetName);
    Worksheet *sheet = book->worksheet(name);
    if (!sheet) {
        sheet = &book->addWorksheetAfterLast();
        sheet->setName(name);
    }
    exportOurs(*sheet, rows, cols);
    save(*book);
    std::printf("seconds %.3f\n", timer.elapsed() / 1000.0);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc >= 5 && std::strcmp(argv[1], "new") == 0)
        return runOursNew(std::atoi(argv[2]), std::atoi(argv[3]), argv[4]);
    if (argc >= 6 && std::strcmp(argv[1], "into") == 0)
        return runOursInto(std::atoi(argv[2]), std::atoi(argv[3]), argv[4], argv[5]);
    std::fprintf(stderr, "usage: bench_xlsx new ROWS COLS OUT | into ROWS COLS BOOK SHEET\n");
    return 2;
}
