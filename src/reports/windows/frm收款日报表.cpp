#include "reports/windows/frm收款日报表.h"

#include "reports/customerreports.h"

namespace quorvale {

frm收款日报表::frm收款日报表(SessionPtr session, QWidget *parent)
    : ReportWindow(std::move(session), propertyCustomerDefinition(), parent)
{
}

} // namespace quorvale
