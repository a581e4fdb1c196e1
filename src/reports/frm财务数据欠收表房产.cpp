#include "reports/frm财务数据欠收表房产.h"

namespace quorvale {

frm财务数据欠收表房产::frm财务数据欠收表房产(QWidget *parent)
    : FinanceReportWindow(FinanceReportKind::PropertyArrears, parent)
{
}

} // namespace quorvale
