#include "reports/windows/frm财务数据预收表车位.h"

namespace quorvale {

frm财务数据预收表车位::frm财务数据预收表车位(SessionPtr session, QWidget *parent)
    : FinanceReportWindow(std::move(session), FinanceReportKind::ParkingAdvance, parent)
{
}

} // namespace quorvale
