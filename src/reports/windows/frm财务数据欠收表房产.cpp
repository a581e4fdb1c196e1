#include "reports/windows/frm财务数据欠收表房产.h"

namespace quorvale {

frm财务数据欠收表房产::frm财务数据欠收表房产(SessionPtr session, DesktopPtr desktop, QWidget *parent)
    : FinanceReportWindow(std::move(session), std::move(desktop), FinanceReportKind::PropertyArrears, parent)
{
}

} // namespace quorvale
