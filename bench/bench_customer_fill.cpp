// Query + fill of the two customer reports for one office of N rows (default
// 100,000): the shared chunked fill engine against the row-at-a-time fill
// (Rows + 1, then one TextMatrix per written cell through the view), same
// database, same grid, same run. Prints medians and the ratio.
// Usage: bench_customer_fill [rows] [repeats] [engine]   (QT_QPA_PLATFORM=offscreen)

#include "db/recordset.h"
#include "dbtools/databasefile.h"
#include "dbtools/embeddeddatabase.h"
#include "reports/customerreports.h"
#include "ui/flexgrid.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

using namespace quorvale;

namespace {

struct Report {
    const char *name;
    ReportDefinition definition;
    QString (*statement)(const QString &);
    void (*fillRow)(const Recordset &, QStringList &);
    QList<int> writtenColumns; // the cells the report's fill table writes
};

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The narrated fill: one Rows increase per record, then each written cell on its own.
int naiveFill(const Report &report, const ConnectionPtr &connection, FlexGrid &grid)
{
    Recordset records;
    records.Open(report.statement(QStringLiteral("BIG")), connection, 0, 1, -1);
    grid.setRows(1);
    const QStringList empty(grid.Cols(), QString());
    while (!records.eof()) {
        QStringList row = empty;
        report.fillRow(records, row);
        grid.setRows(grid.Rows() + 1);
        const int r = grid.Rows() - 1;
        for (int c : report.writtenColumns)
            grid.setTextMatrix(r, c, row[c]);
        records.MoveNext();
    }
    return grid.Rows() - 1;
}

// Reading and building the rows without any grid: the floor both fills share.
int queryOnly(const Report &report, const ConnectionPtr &connection, int cols)
{
    Recordset records;
    records.Open(report.statement(QStringLiteral("BIG")), connection, 0, 1, -1);
    const QStringList empty(cols, QString());
    int n = 0;
    for (; !records.eof(); records.MoveNext(), ++n) {
        QStringList row = empty;
        report.fillRow(records, row);
    }
    return n;
}

qint64 g_repaintNs = 0;
int g_repaints = 0;

int engineFill(const Report &report, const ConnectionPtr &connection, ReportTable &table,
               FlexGrid &grid)
{
    ReportParams params;
    params.officeCode = QStringLiteral("BIG");
    // As the window does: a repaint at most every 250 ms between chunks.
    QElapsedTimer sinceRepaint;
    sinceRepaint.start();
    computeReport(report.definition, connection, params, table, grid.textWidthFn(), [&](int) {
        grid.tableChanged(1);
        if (sinceRepaint.elapsed() >= 250) {
            QElapsedTimer paint;
            paint.start();
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            g_repaintNs += paint.nsecsElapsed();
            ++g_repaints;
            sinceRepaint.restart();
        }
    });
    return grid.Rows() - 1;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int scale = argc > 1 ? std::atoi(argv[1]) : 100000;
    const int repeats = argc > 2 ? std::atoi(argv[2]) : 3;
    // "engine" as third argument skips the other fills, for profiling.
    const bool engineOnly = argc > 3 && qstrcmp(argv[3], "engine") == 0;

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.db"));
    DatabaseFileOptions options;
    options.demo = true;
    options.scale = scale;
    QElapsedTimer setup;
    setup.start();
    createDatabaseFile(path, options);
    const ConnectionPtr connection = openEmbeddedDatabase(path);
    std::printf("database with %d rows per report built in %lld ms\n", scale,
                static_cast<long long>(setup.elapsed()));

    const QList<Report> reports = {
        {"property customers (71 columns)",
         propertyCustomerDefinition(),
         propertyCustomerStatement,
         fillPropertyCustomerRow,
         {0, 1, 2, 4, 9, 10, 13, 15, 16, 20, 22, 49, 52}},
        {"parking customers (64 columns)",
         parkingCustomerDefinition(),
         parkingCustomerStatement,
         fillParkingCustomerRow,
         {0, 1, 2, 3, 4, 7, 9, 10, 38, 42}},
    };

    for (const Report &report : reports) {
        ReportTable table;
        FlexGrid grid(table);
        grid.resize(1200, 800);
        grid.show();
        grid.setRows(1);
        grid.setFormatString(report.definition.formatString);
        g_repaintNs = 0;
        g_repaints = 0;
        QList<double> engine, naive, query;
        int rows = 0;
        for (int i = 0; i < repeats; ++i) {
            QElapsedTimer t;
            t.start();
            if (!engineOnly)
                queryOnly(report, connection, grid.Cols());
            query << double(t.elapsed());
            t.restart();
            rows = engineFill(report, connection, table, grid);
            QCoreApplication::processEvents();
            engine << double(t.elapsed());
            t.restart();
            const int naiveRows = engineOnly ? rows : naiveFill(report, connection, grid);
            QCoreApplication::processEvents();
            naive << double(t.elapsed());
            if (naiveRows != rows) {
                std::fprintf(stderr, "row counts differ: %d vs %d\n", rows, naiveRows);
                return 1;
            }
        }
        const double e = median(engine), n = median(naive), q = median(query);
        std::printf("%-32s rows %7d  query+build %6.0f ms  engine %6.0f ms  naive %6.0f ms  "
                    "naive/engine %.2fx  grid part: engine %.0f ms, naive %.0f ms\n",
                    report.name, rows, q, e, n, n / e, e - q, n - q);
        std::printf("%-32s repaints between chunks: %.1f per run, %.0f ms per run\n", "",
                    double(g_repaints) / repeats, g_repaintNs / 1e6 / repeats);
    }
    return 0;
}
