#include "reports/windows/frm收款日报表.h"

#include "reports/customerreports.h"

namespace quorvale {

frm收款日报表::frm收款日报表(SessionPtr session, DesktopPtr desktop, QWidget *parent)
    : ReportWindow(std::move(session), std::move(desktop), propertyCustomerDefinition(), parent)
{
}

} // namespace quorvale
