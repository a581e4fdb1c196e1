#include "reports/windows/frm财务数据预收表房产.h"

namespace quorvale {

frm财务数据预收表房产::frm财务数据预收表房产(SessionPtr session, QWidget *parent)
    : FinanceReportWindow(std::move(session), FinanceReportKind::PropertyAdvance, parent)
{
}

} // namespace quorvale
