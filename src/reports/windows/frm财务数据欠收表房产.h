#pragma once

#include "reports/windows/financereportwindow.h"

namespace quorvale {

// The property arrears table: receivables of the daily fee items not received by
// the cut-off date, for one month and all months before it, or for a range.
class frm财务数据欠收表房产 : public FinanceReportWindow {
  public:
    explicit frm财务数据欠收表房产(SessionPtr session, DesktopPtr desktop, QWidget *parent = nullptr);
};

} // namespace quorvale
