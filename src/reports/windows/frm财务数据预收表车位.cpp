#include "reports/windows/frm财务数据预收表车位.h"

namespace quorvale {

frm财务数据预收表车位::frm财务数据预收表车位(SessionPtr session, DesktopPtr desktop, QWidget *parent)
    : FinanceReportWindow(std::move(session), std::move(desktop), FinanceReportKind::ParkingAdvance, parent)
{
}

} // namespace quorvale
