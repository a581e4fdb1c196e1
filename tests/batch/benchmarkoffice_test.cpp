#include "batch/batchreport.h"
#include "reports/reportdefinition.h"
#include "runtime/textwidth.h"
#include "support/fixturedb.h"

#include <QDate>
#include <gtest/gtest.h>

using namespace quorvale;

// The benchmarks rely on it: with each window's defaults on the day the
// database was made, every report of office BIG lists exactly `scale` rows.
TEST(BenchmarkOffice, EveryReportYieldsScaleRowsWithDefaultParameters)
{
    constexpr int scale = 37;
    FixtureDb db;
    ExportRequest request;
    request.today = QDate(2026, 11, 22);
    db.loadDemo(request.today, scale);
    const TextWidthFn textWidth = textWidthsIn(reportWindowFont(QFont()), 96);
    for (const QString &name : menuReportNames()) {
        const ReportEntry report = *findReport(name);
        ReportParams params = reportParams(report, request);
        params.officeCode = QStringLiteral("BIG");
        ReportTable table;
        prepareReportTable(report.definition, table, textWidth);
        computeForBatch(report, db.connection(), params, table, textWidth, {});
        EXPECT_EQ(table.rows() - 1, scale) << name.toStdString();
    }
}
