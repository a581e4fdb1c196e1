#include "reports/windows/frm车位基础表.h"

#include "reports/customerreports.h"

namespace quorvale {

frm车位基础表::frm车位基础表(SessionPtr session, DesktopPtr desktop, QWidget *parent)
    : ReportWindow(std::move(session), std::move(desktop), parkingCustomerDefinition(), parent) {}

} // namespace quorvale
