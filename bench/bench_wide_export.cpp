// The export of a wide report table: ROWS rows of COLS filled columns written
// by the export window's own function into a new workbook. Reading the
// table's cells is what grows with the width; the time of the whole export
// is printed.
// Usage: bench_wide_export [rows] [cols]   (QT_QPA_PLATFORM=offscreen)
// The last line is machine-readable: "result key=value ...".

#include "output/exportoptions.h"
#include "output/gridexport.h"
#include "table/reporttable.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

using namespace quorvale;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int rows = argc > 1 ? std::atoi(argv[1]) : 20000;
    const int cols = argc > 2 ? std::atoi(argv[2]) : 71;

    ReportTable table;
    table.setCols(cols);
    table.setRows(1);
    QVector<QStringList> data;
    for (int r = 0; r < rows; ++r) {
        QStringList cells;
        for (int c = 0; c < cols; ++c)
            cells << QStringLiteral("行%1列%2").arg(r).arg(c);
        data << cells;
    }
    table.appendRows(data);
    QVector<int> chosen;
    for (int c = 0; c < cols; ++c) {
        table.setText(0, c, QStringLiteral("列%1").arg(c));
        chosen << c;
    }

    QTemporaryDir dir;
    QElapsedTimer clock;
    clock.start();
    writeTableToWorkbook(table, chosen,
                         {ExportVariant::Customer, dir.filePath(QStringLiteral("wide.xlsx")),
                          QStringLiteral("宽表"), QStringLiteral("t")});
    const double seconds = clock.elapsed() / 1000.0;
    std::printf("%d rows x %d columns exported in %.3f s\n", rows, cols, seconds);
    std::printf("result rows=%d cols=%d export_s=%.3f\n", rows, cols, seconds);
    return 0;
}
