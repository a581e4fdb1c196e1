// Printing a finance report's table to PDF: office BIG's property arrears at N
// rows (default 10,000; the database is what `quorvale-admin create-db
// --scale N` writes), filled by the report's own compute with the window's
// load defaults, then printed by the print engine REPEATS times. Only the
// print is timed; peak memory is the process's high-water mark during the
// print, reset before each run.
// Usage: bench_print [rows] [repeats]   (QT_QPA_PLATFORM=offscreen)
// The last line is machine-readable: "result key=value ...".

#include "dbtools/databasefile.h"
#include "dbtools/embeddeddatabase.h"
#include "output/gridprint.h"
#include "processmemory.h"
#include "reports/feecodelist.h"
#include "reports/financereport.h"
#include "reports/financereporttraits.h"
#include "runtime/textwidth.h"
#include "runtime/outputset.h"
#include "runtime/printer.h"

#include <QGuiApplication>
#include <QElapsedTimer>
#include <QPageLayout>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

using namespace quorvale;
using namespace quorvale::bench;

namespace {

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const int scale = argc > 1 ? std::atoi(argv[1]) : 10000;
    const int repeats = argc > 2 ? std::atoi(argv[2]) : 5;

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.db"));
    DatabaseFileOptions options;
    options.demo = true;
    options.scale = scale;
    createDatabaseFile(path, options);
    const ConnectionPtr connection = openEmbeddedDatabase(path);

    const FinanceReportKind kind = FinanceReportKind::PropertyArrears;
    const QDate today = QDate::currentDate();
    ReportParams params;
    params.officeCode = QStringLiteral("BIG");
    params.officeName = QStringLiteral("基准测试管理处");
    params.feeCodeList = FeeCodeList::load(financeTraits(kind).category, connection).text();
    params.month = params.firstMonth = params.lastMonth = today.toString(QStringLiteral("yyyyMM"));
    params.receiptCutOffText = today.toString(QStringLiteral("yyyy/MM/dd"));
    params.receiptCutOff = params.receiptFrom = params.receiptTo = today;

    // Measured and printed in the report windows' font, as the batch export does.
    const ReportDefinition definition = financeReportDefinition(kind);
    const QFont font = reportWindowFont(QGuiApplication::font());
    const TextWidthFn textWidth = textWidthsIn(font, screenDpi());
    ReportTable table;
    prepareReportTable(definition, table, textWidth);
    computeReport(definition, connection, params, table, textWidth);
    const PrintTitles titles = reportPrintTitles(params.officeName, today, today, today);
    const PrintLook look = printLookOf(font, screenDpi());

    // A table wider than the paper is printed anyway, as the batch export does.
    int asked = 0;

    QList<double> wall, cpu, peak;
    int pages = 0;
    qint64 bytes = 0;
    const long before = statusKiB("VmRSS:");
    for (int i = 0; i < repeats; ++i) {
        const QString pdf = dir.filePath(QStringLiteral("print%1.pdf").arg(i));
        resetPeak();
        const double cpu0 = cpuSeconds();
        QElapsedTimer timer;
        timer.start();
        OutputSet outputs;
        auto printer = Printer::pdf(outputs.add(pdf).device(), Printer::defaultPageLayout());
        if (!tableFitsPaper(*printer, table, 0))
            ++asked;
        PrintGrid(*printer, table, look, titles, false, 0);
        printer->EndDoc();
        pages = printer->Page();
        outputs.commit();
        wall << timer.elapsed() / 1000.0;
        cpu << cpuSeconds() - cpu0;
        peak << statusKiB("VmHWM:") / 1024.0;
        bytes = QFileInfo(pdf).size();
        QFile::remove(pdf);
    }
    std::printf("%d rows x %d columns printed %d times; the table was wider than the paper %d "
                "times\n",
                table.rows() - 1, table.cols(), repeats, asked);
    std::printf("result rows=%d cols=%d pages=%d wall_s=%.3f cpu_s=%.3f peak_rss_mb=%.0f "
                "rss_before_mb=%.0f pdf_mb=%.2f runs=%d asked=%d\n",
                table.rows() - 1, table.cols(), pages, median(wall), median(cpu), median(peak),
                before / 1024.0, bytes / 1048576.0, repeats, asked);
    return 0;
}
