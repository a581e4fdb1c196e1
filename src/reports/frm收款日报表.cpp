#include "reports/frm收款日报表.h"

#include "reports/customerreports.h"

namespace quorvale {

frm收款日报表::frm收款日报表(QWidget *parent) : ReportWindow(propertyCustomerDefinition(), parent)
{
}

} // namespace quorvale
