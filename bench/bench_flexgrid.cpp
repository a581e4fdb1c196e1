// Grid fill and print timings at report sizes: 100,000 rows of the 71-column
// customer layout (a fifth of the cells filled), filled the way the report
// windows do it and in one bulk append, plus printing a long grid to PDF.
// Usage: bench_flexgrid [rows]   (run with QT_QPA_PLATFORM=offscreen)

#include "output/gridprint.h"
#include "processmemory.h"
#include "runtime/outputset.h"
#include "runtime/printer.h"
#include "ui/flexgrid.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPageLayout>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

using namespace quorvale;
using quorvale::bench::residentKiB;

namespace {

constexpr int kCols = 71;

// The cells a customer record fills: every fifth column, repeating texts.
QString cellText(int row, int col)
{
    switch (col % 4) {
    case 0:
        return QStringLiteral("A%1栋-%2").arg(row % 40).arg(row % 1000);
    case 1:
        return QStringLiteral("住宅");
    case 2:
        return QString::number((row % 500) * 1.25);
    default:
        return QStringLiteral("2024-03-%1").arg(row % 28 + 1);
    }
}

void setUp(FlexGrid &grid)
{
    QStringList headings;
    for (int c = 0; c < kCols; ++c)
        headings << QStringLiteral("列%1").arg(c);
    grid.setRows(1);
    grid.setFormatString(headings.join(QLatin1String("|<")));
}

void report(const char *what, qint64 ms, long kibBefore)
{
    std::printf("%-44s %7lld ms   RSS %+8ld KiB\n", what, static_cast<long long>(ms),
                residentKiB() - kibBefore);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int rows = argc > 1 ? std::atoi(argv[1]) : 100000;
    QFont window(QStringLiteral("微软雅黑"));
    window.setPointSizeF(9);
    QElapsedTimer timer;

    {
        FlexGrid grid;
        setUp(grid);
        grid.resize(1200, 800);
        grid.show();
        QCoreApplication::processEvents();
        const long before = residentKiB();
        timer.start();
        // Row by row with the report windows' width pass over every column.
        for (int r = 1; r <= rows; ++r) {
            grid.setRows(grid.Rows() + 1);
            const int last = grid.Rows() - 1;
            for (int c = 0; c < kCols; c += 5)
                grid.setTextMatrix(last, c, cellText(r, c));
            for (int c = 0; c < kCols; ++c) {
                const double w = grid.TextWidth(grid.TextMatrix(last, c), window);
                if (w + 80 > grid.ColWidth(c))
                    grid.setColWidth(c, qRound(w + 100));
            }
        }
        report("row by row + width pass (per-row growth)", timer.elapsed(), before);
        timer.restart();
        QCoreApplication::processEvents();
        report("  first event loop turn (view catches up)", timer.elapsed(), before);
    }
    {
        FlexGrid grid;
        setUp(grid);
        QVector<QStringList> batch;
        batch.reserve(rows);
        for (int r = 1; r <= rows; ++r) {
            QStringList cells;
            for (int c = 0; c < kCols; ++c)
                cells << (c % 5 == 0 ? cellText(r, c) : QString());
            batch.append(cells);
        }
        const long before = residentKiB();
        timer.start();
        grid.appendRows(batch);
        report("appendRows in one batch", timer.elapsed(), before);
    }
    {
        FlexGrid grid;
        setUp(grid);
        for (int c = 0; c < kCols; ++c)
            grid.setColWidth(c, c < 8 ? 1300 : 0);
        const int printed = qMin(rows, 5000);
        for (int r = 1; r <= printed; ++r) {
            grid.setRows(grid.Rows() + 1);
            for (int c = 0; c < 8; ++c)
                grid.setTextMatrix(r, c, cellText(r, c));
        }
        QTemporaryDir dir;
        const long before = residentKiB();
        timer.start();
        OutputSet outputs;
        auto printer = Printer::pdf(outputs.add(dir.filePath(QStringLiteral("bench.pdf"))).device(),
                                    Printer::defaultPageLayout());
        PrintGrid(*printer, grid.table(), grid.printLook(),
                  {QStringLiteral("(A01 东湖花园)收款日报表"), QString()}, false, kCols - 8);
        printer->EndDoc();
        outputs.commit();
        char what[64];
        std::snprintf(what, sizeof what, "PrintGrid %d rows to PDF", printed);
        report(what, timer.elapsed(), before);
    }
    return 0;
}
