#include "reports/frm车位基础表.h"

#include "reports/customerreports.h"

namespace quorvale {

frm车位基础表::frm车位基础表(QWidget *parent) : ReportWindow(parkingCustomerDefinition(), parent) {}

} // namespace quorvale
