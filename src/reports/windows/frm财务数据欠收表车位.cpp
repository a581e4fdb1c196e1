#include "reports/windows/frm财务数据欠收表车位.h"

namespace quorvale {

frm财务数据欠收表车位::frm财务数据欠收表车位(SessionPtr session, DesktopPtr desktop, QWidget *parent)
    : FinanceReportWindow(std::move(session), std::move(desktop), FinanceReportKind::ParkingArrears, parent)
{
}

} // namespace quorvale
