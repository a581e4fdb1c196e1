#pragma once

#include "db/connection.h"
#include "output/exportwindow.h"
#include "reports/gridfill.h"
#include "reports/officelist.h"
#include "reports/reportparams.h"
#include "ui/flexgrid.h"

#include <QString>
#include <functional>

namespace quorvale {

class FlexGrid;

// A report's compute procedure: runs its query for the office and fills the
// grid (header row kept). The same procedure serves the window, the batch
// export and the tests; errors are thrown as RuntimeError.
using ComputeFn = std::function<void(const ConnectionPtr &connection, const ReportParams &params,
                                     FlexGrid &grid, GridFill &fill)>;

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
    ExportWindow::Variant exportVariant = ExportWindow::Variant::Customer;
    QString exportTitleSuffix; // e.g. " 房产数据"
    QString exportTemplate;    // e.g. "房产数据模板"
};

// Runs a report's compute procedure without a window (batch export, tests,
// benchmarks); progress is told after every chunk of rows.
void computeReport(const ReportDefinition &definition, const ConnectionPtr &connection,
                   const ReportParams &params, FlexGrid &grid, const FillProgress &progress = {},
                   int chunkRows = GridFill::DefaultChunkRows);

} // namespace quorvale
