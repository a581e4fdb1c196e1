#include "reports/windows/frm财务数据欠收表房产.h"

namespace quorvale {

frm财务数据欠收表房产::frm财务数据欠收表房产(SessionPtr session, QWidget *parent)
    : FinanceReportWindow(std::move(session), FinanceReportKind::PropertyArrears, parent)
{
}

} // namespace quorvale
