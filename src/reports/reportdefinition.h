#pragma once

#include "db/connection.h"
#include "output/exportvariant.h"
#include "reports/officelist.h"
#include "reports/reportparams.h"
#include "table/reporttable.h"
#include "reports/tablefill.h"

#include <QFont>
#include <QString>
#include <functional>

namespace quorvale {

// A report's compute procedure: runs its query for the office and fills the
// table (heading row kept) through the fill engine. The same procedure
// serves the window, the batch export and the tests; errors are thrown as
// RuntimeError.
using ComputeFn = std::function<void(const ConnectionPtr &connection, const ReportParams &params,
                                     TableFill &fill)>;

// Everything in which the report windows differ that needs no widget.
struct ReportDefinition {
    QString windowName; // objectName, e.g. "frm收款日报表"
    QString caption;
    QString gridName = QStringLiteral("MSFlexGrid1");
    // The grid's column list; set with Rows = 1 at load when headerAtLoad,
    // otherwise it is the grid's designed heading, applied once when built.
    QString formatString;
    bool headerAtLoad = true;
    OfficeQueryStyle officeStyle = OfficeQueryStyle::Property;
    ComputeFn compute;
    ExportVariant exportVariant = ExportVariant::Customer;
    QString exportTitleSuffix; // e.g. " 房产数据"
    QString exportTemplate;    // e.g. "房产数据模板"
};

// The report windows' font: the application's font in 微软雅黑.
QFont reportWindowFont(const QFont &base);

// Gives a table that no window holds the heading the report's window gives
// its own grid, measured as the window measures, so that widths (and so
// exported and printed widths) come out alike.
void prepareReportTable(const ReportDefinition &definition, ReportTable &table,
                        const TextWidthFn &textWidth);

// Runs a report's compute procedure without a window (batch export, tests,
// benchmarks); progress is told after every chunk of rows.
void computeReport(const ReportDefinition &definition, const ConnectionPtr &connection,
                   const ReportParams &params, ReportTable &table, const TextWidthFn &textWidth,
                   const FillProgress &progress = {},
                   int chunkRows = TableFill::DefaultChunkRows);

} // namespace quorvale
