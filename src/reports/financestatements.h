#pragma once

#include "reports/financereportkind.h"
#include "reports/reportparams.h"

#include <QStringList>

namespace quorvale {

// The statements a finance report runs, in order: one for the property
// reports; for the parking reports the rented-space statement, then the
// owned-space one. The user's texts are spliced as typed, quotes doubled.
QStringList financeStatements(FinanceReportKind kind, const ReportParams &params);

} // namespace quorvale
