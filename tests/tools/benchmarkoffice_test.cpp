#include "reports/reportprint.h"
#include "session/dbconnection.h"
#include "support/fixturedb.h"
#include "tools/batchreport.h"
#include "ui/flexgrid.h"

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
    DbConn = db.connection();
    for (const QString &name : menuReportNames()) {
        const ReportEntry report = *findReport(name);
        ReportParams params = reportParams(report, request);
        params.officeCode = QStringLiteral("BIG");
        FlexGrid grid;
        prepareReportGrid(report.definition, grid);
        computeForBatch(report, params, grid, {});
        EXPECT_EQ(grid.Rows() - 1, scale) << name.toStdString();
    }
    DbConn.reset();
}
