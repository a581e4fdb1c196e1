#pragma once

#include "batch/exportrequest.h"
#include "batch/reportlookup.h"
#include "db/connection.h"
#include "output/officeoverview.h"
#include "reports/reportparams.h"
#include "reports/tablefill.h"
#include "runtime/printer.h"
#include "table/reporttable.h"

#include <QPageLayout>
#include <QString>
#include <functional>

namespace quorvale {

class StagedFile;

// What one report of a batch needs that the window would have had: its
// inputs, its compute and its print, without a window.

// The window's inputs at load (today), then what the command line gives.
ReportParams reportParams(const ReportEntry &report, const ExportRequest &request);

// Fills the table with the report's own compute procedure, measuring as
// the report's window would. The window's refusals (its input checks, no
// fee item) throw RefusedError.
void computeForBatch(const ReportEntry &report, const ConnectionPtr &connection,
                     ReportParams &params, ReportTable &table, const TextWidthFn &textWidth,
                     const FillProgress &progress);

// The paper of a batch print: `auto` turns the page when the table is wider
// than the upright page but fits the turned one.
QPageLayout batchPageLayout(const QString &paper, ExportRequest::Orientation orientation,
                            double tableWidthTwips);

// Prints the table as the window's print button would, into a staged PDF.
// The window would ask whether to change the paper; unattended, a table too
// wide is printed anyway (shifted left) and `warning` is told.
void printForBatch(StagedFile &pdf, const ReportEntry &report, const ReportParams &params,
                   const ReportTable &table, const PrintLook &look, const QPageLayout &layout,
                   const std::function<void(const QString &)> &warning);

// Prints an office's month-end overview into a staged PDF: its tables, then
// its charts, dated today.
void printOverviewForBatch(StagedFile &pdf, const OfficeOverview &overview, const PrintLook &look,
                           const QPageLayout &layout);

} // namespace quorvale
