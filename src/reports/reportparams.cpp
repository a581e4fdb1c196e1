#include "reports/reportparams.h"

#include "runtime/vb.h"

namespace quorvale {

ReportParams windowLoadDefaults(const QDate &today)
{
    ReportParams p;
    p.month = p.firstMonth = p.lastMonth = vbrt::formatYearMonth(today);
    p.receiptCutOffText = today.toString(QStringLiteral("yyyy/MM/dd"));
    p.receiptCutOff = p.receiptFrom = p.receiptTo = today;
    return p;
}

} // namespace quorvale
