#include "reports/frm财务数据欠收表车位.h"

namespace quorvale {

frm财务数据欠收表车位::frm财务数据欠收表车位(QWidget *parent)
    : FinanceReportWindow(FinanceReportKind::ParkingArrears, parent)
{
}

} // namespace quorvale
