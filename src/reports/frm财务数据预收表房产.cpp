#include "reports/frm财务数据预收表房产.h"

namespace quorvale {

frm财务数据预收表房产::frm财务数据预收表房产(QWidget *parent)
    : FinanceReportWindow(FinanceReportKind::PropertyAdvance, parent)
{
}

} // namespace quorvale
