#pragma once

#include "reports/windows/financereportwindow.h"

namespace quorvale {

// The parking advance-receipt table: parking fees already received for months
// after the chosen one (or inside a range), rented spaces first.
class frm财务数据预收表车位 : public FinanceReportWindow {
  public:
    explicit frm财务数据预收表车位(SessionPtr session, DesktopPtr desktop, QWidget *parent = nullptr);
};

} // namespace quorvale
