#pragma once

#include "reports/windows/financereportwindow.h"

namespace quorvale {

// The property advance-receipt table: daily fees already received for months
// after the chosen one (or inside a range).
class frm财务数据预收表房产 : public FinanceReportWindow {
  public:
    explicit frm财务数据预收表房产(SessionPtr session, DesktopPtr desktop, QWidget *parent = nullptr);
};

} // namespace quorvale
