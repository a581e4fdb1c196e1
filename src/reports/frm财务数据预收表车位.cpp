#include "reports/frm财务数据预收表车位.h"

namespace quorvale {

frm财务数据预收表车位::frm财务数据预收表车位(QWidget *parent)
    : FinanceReportWindow(FinanceReportKind::ParkingAdvance, parent)
{
}

} // namespace quorvale
