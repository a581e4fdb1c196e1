#pragma once

#include "reports/financereportkind.h"
#include "reports/reportparams.h"

#include <QString>

namespace quorvale {

// The outcome of a finance query procedure's checks, before any statement
// runs. A refusal carries the box to show and the control to focus, so the
// window shows it with MsgBox and the batch export prints the message.
struct FinanceCheck {
    enum class Outcome { Proceed, SilentStop, Refuse };

    Outcome outcome = Outcome::Proceed;
    QString message;
    int style = 0;
    QString title;        // empty: the box shows the program title
    QString focusControl; // objectName of the box to focus, empty for none

    bool proceeds() const { return outcome == Outcome::Proceed; }
};

// The checks in the order the query procedures make them: a silent stop for
// an empty fee-item list, then the months, then the receipt dates (the
// arrears cut-off text, or the advance-receipt picker range, which is tested
// only in the cut-off mode).
FinanceCheck checkFinanceInput(FinanceReportKind kind, const ReportParams &params);

} // namespace quorvale
