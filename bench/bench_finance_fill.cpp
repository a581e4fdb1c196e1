// Query + fill of the four finance reports for office BIG with N rows each
// (default 100,000; the database is what `quorvale-admin create-db --demo
// --scale N` writes, run with the windows' load defaults): the shared chunked
// fill with the finance width rules against the row-at-a-time fill (Rows + 1,
// one TextMatrix per written cell, then every column's cell measured afresh
// on every row), same database, same run. Checks that both give the same
// cells and column widths, and prints medians and the ratio.
// Usage: bench_finance_fill [rows] [repeats] [report 1-4]   (QT_QPA_PLATFORM=offscreen)

#include "db/recordset.h"
#include "dbtools/databasefile.h"
#include "dbtools/embeddeddatabase.h"
#include "reports/feecodelist.h"
#include "reports/financereport.h"
#include "reports/financereporttraits.h"
#include "reports/financerows.h"
#include "reports/financestatements.h"
#include "reports/tablefill.h"
#include "ui/flexgrid.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QImage>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace quorvale;

namespace {

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// What each window's load puts into its controls today.
ReportParams loadDefaults(FinanceReportKind kind, const ConnectionPtr &connection)
{
    const QDate today = QDate::currentDate();
    ReportParams params;
    params.officeCode = QStringLiteral("BIG");
    params.feeCodeList = FeeCodeList::load(financeTraits(kind).category, connection).text();
    params.month = params.firstMonth = params.lastMonth = today.toString(QStringLiteral("yyyyMM"));
    params.receiptCutOffText = today.toString(QStringLiteral("yyyy/MM/dd"));
    params.receiptCutOff = params.receiptFrom = params.receiptTo = today;
    return params;
}

// Measures without any cache, as the narrated rule does on every cell.
QFontMetricsF uncachedMetrics(const FlexGrid &grid)
{
    QImage device(1, 1, QImage::Format_ARGB32);
    const int dotsPerMeter = qRound(grid.logicalDpiX() / 0.0254);
    device.setDotsPerMeterX(dotsPerMeter);
    device.setDotsPerMeterY(dotsPerMeter);
    return QFontMetricsF(grid.font(), &device);
}

// The narrated fill: one Rows increase per record, each written cell on its
// own, then every column of the measured row through the width rule.
void naiveFill(FinanceReportKind kind, const ConnectionPtr &connection, const ReportParams &params,
               FlexGrid &grid)
{
    const FinanceReportTraits &traits = financeTraits(kind);
    const bool newRow = traits.fit == ColumnFit::NewRow;
    const QFontMetricsF metrics = uncachedMetrics(grid);
    const double twipsPerPixel = 1440.0 / grid.logicalDpiX();
    grid.setRows(1);
    if (newRow)
        grid.setRedraw(false);
    const QStringList empty(grid.Cols(), QString());
    for (const QString &statement : financeStatements(kind, params)) {
        Recordset records;
        records.Open(statement, connection, 0, 1, -1);
        FinanceRowBuilder build(kind);
        while (!records.eof()) {
            QStringList row = empty;
            build(records, row);
            grid.setRows(grid.Rows() + 1);
            const int r = grid.Rows() - 1;
            for (int c = 0; c < row.size(); ++c) {
                if (!row[c].isEmpty())
                    grid.setTextMatrix(r, c, row[c]);
            }
            if (newRow)
                grid.setRow(r);
            for (int c = 0; c < grid.Cols(); ++c) {
                const QString text = grid.TextMatrix(grid.Row(), c);
                const double w =
                    text.isEmpty() ? 0.0 : metrics.horizontalAdvance(text) * twipsPerPixel;
                if (w + (newRow ? 90 : 80) > grid.ColWidth(c))
                    grid.setColWidth(c, int(std::lround(w + (newRow ? 90 : 100))));
            }
            records.MoveNext();
        }
    }
    if (newRow)
        grid.setRedraw(true);
}

// The statements and the row texts alone: the floor under both fills.
int queryOnly(FinanceReportKind kind, const ConnectionPtr &connection, const ReportParams &params,
              int cols)
{
    int rows = 0;
    const QStringList empty(cols, QString());
    for (const QString &statement : financeStatements(kind, params)) {
        Recordset records;
        records.Open(statement, connection, 0, 1, -1);
        FinanceRowBuilder build(kind);
        for (; !records.eof(); records.MoveNext()) {
            QStringList row = empty;
            build(records, row);
            ++rows;
        }
    }
    return rows;
}

void engineFill(FinanceReportKind kind, const ConnectionPtr &connection, const ReportParams &params,
                ReportTable &table, FlexGrid &grid)
{
    // As the window shows a fill: the grid follows the fill's drawing switch
    // and hears of the rows from the first one changed.
    TableFill fill(table, grid.textWidthFn(), {});
    fill.setCursor({grid.Row(), grid.Redraw()});
    const auto show = [&] {
        grid.setRedraw(fill.cursor().drawing);
        grid.tableChanged(fill.firstChangedRow());
    };
    fill.setProgress([&](int) {
        show();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    financeReportDefinition(kind).compute(connection, params, fill);
    show();
    grid.setRow(fill.cursor().currentRow);
}

bool sameGrid(const FlexGrid &a, const FlexGrid &b)
{
    if (a.Rows() != b.Rows() || a.Cols() != b.Cols()) {
        std::fprintf(stderr, "size %d x %d against %d x %d\n", a.Rows(), a.Cols(), b.Rows(),
                     b.Cols());
        return false;
    }
    for (int c = 0; c < a.Cols(); ++c) {
        if (a.ColWidth(c) != b.ColWidth(c)) {
            std::fprintf(stderr, "column %d width %d against %d (rows %d, %d current)\n", c,
                         a.ColWidth(c), b.ColWidth(c), a.Row(), b.Row());
            return false;
        }
    }
    for (int r = 0; r < a.Rows(); ++r) {
        for (int c = 0; c < a.Cols(); ++c) {
            if (a.TextMatrix(r, c) != b.TextMatrix(r, c)) {
                std::fprintf(stderr, "cell %d,%d differs\n", r, c);
                return false;
            }
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int scale = argc > 1 ? std::atoi(argv[1]) : 100000;
    const int repeats = argc > 2 ? std::atoi(argv[2]) : 3;
    const int only = argc > 3 ? std::atoi(argv[3]) : 0;

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

    const struct {
        const char *name;
        FinanceReportKind kind;
    } reports[] = {
        {"property arrears (15 columns)", FinanceReportKind::PropertyArrears},
        {"parking arrears (16 columns)", FinanceReportKind::ParkingArrears},
        {"parking advance receipts (20 columns)", FinanceReportKind::ParkingAdvance},
        {"property advance receipts (20 columns)", FinanceReportKind::PropertyAdvance},
    };
    for (const auto &report : reports) {
        if (only && &report - reports + 1 != only)
            continue;
        const ReportParams params = loadDefaults(report.kind, connection);
        ReportTable engineTable, naiveTable;
        FlexGrid engineGrid(engineTable), naiveGrid(naiveTable);
        const auto prepare = [&](ReportTable &table, FlexGrid &grid) {
            prepareReportTable(financeReportDefinition(report.kind), table, grid.textWidthFn());
            grid.tableChanged();
        };
        for (FlexGrid *grid : {&engineGrid, &naiveGrid}) {
            grid->resize(1200, 800);
            // A focused view makes its first data row current on its own; the
            // rule measures the current row, so neither grid may take focus.
            grid->setFocusPolicy(Qt::NoFocus);
            grid->show();
        }
        prepare(engineTable, engineGrid);
        prepare(naiveTable, naiveGrid);
        QList<double> engine, naive, query;
        for (int i = 0; i < repeats; ++i) {
            // Each run starts from the heading's widths, as a freshly loaded window does.
            prepare(engineTable, engineGrid);
            prepare(naiveTable, naiveGrid);
            QElapsedTimer t;
            t.start();
            queryOnly(report.kind, connection, params, engineGrid.Cols());
            query << double(t.elapsed());
            t.restart();
            engineFill(report.kind, connection, params, engineTable, engineGrid);
            QCoreApplication::processEvents();
            engine << double(t.elapsed());
            t.restart();
            naiveFill(report.kind, connection, params, naiveGrid);
            QCoreApplication::processEvents();
            naive << double(t.elapsed());
        }
        if (!sameGrid(engineGrid, naiveGrid)) {
            std::fprintf(stderr, "%s: the two fills differ\n", report.name);
            return 1;
        }
        const double e = median(engine), n = median(naive), q = median(query);
        std::printf("%-40s rows %7d  query alone %6.0f ms  engine %6.0f ms (fill %5.0f)  naive "
                    "%6.0f ms (fill %5.0f)  ratio %.1fx, fill alone %.1fx\n",
                    report.name, engineGrid.Rows() - 1, q, e, e - q, n, n - q, n / e,
                    (n - q) / qMax(1.0, e - q));
    }
    return 0;
}
