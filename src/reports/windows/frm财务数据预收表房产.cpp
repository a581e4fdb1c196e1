#include "reports/windows/frm财务数据预收表房产.h"

namespace quorvale {

frm财务数据预收表房产::frm财务数据预收表房产(SessionPtr session, DesktopPtr desktop, QWidget *parent)
    : FinanceReportWindow(std::move(session), std::move(desktop), FinanceReportKind::PropertyAdvance, parent)
{
}

} // namespace quorvale
