#pragma once

#include "reports/financecheck.h"
#include "reports/financereportkind.h"
#include "reports/reportdefinition.h"

namespace quorvale {

// A finance report's query procedure without its window: runs the report's
// statements one after the other and appends their rows, widening columns by
// the report's rule. The table is emptied to its heading row once the first
// statement is open, so one that fails to open leaves the earlier result;
// rows already added stay when a later step fails. The error travels on.
void computeFinanceReport(FinanceReportKind kind, const ConnectionPtr &connection,
                          const ReportParams &params, TableFill &fill);

// The report as the skeleton, the registry and the batch export know it.
ReportDefinition financeReportDefinition(FinanceReportKind kind);

// The batch export's entry: the window's checks in their order, then the
// compute when they pass. A refusal carries the message the window shows;
// the table is untouched unless the result proceeds.
FinanceCheck runFinanceReport(FinanceReportKind kind, const ConnectionPtr &connection,
                              const ReportParams &params, ReportTable &table,
                              const TextWidthFn &textWidth, const FillProgress &progress = {});

} // namespace quorvale
