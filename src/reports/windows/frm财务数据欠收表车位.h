#pragma once

#include "reports/windows/financereportwindow.h"

namespace quorvale {

// The parking arrears table: never-received parking fees of rented, then of
// owned spaces, for one month and all before it, or for a range.
class frm财务数据欠收表车位 : public FinanceReportWindow {
  public:
    explicit frm财务数据欠收表车位(SessionPtr session, DesktopPtr desktop, QWidget *parent = nullptr);
};

} // namespace quorvale
