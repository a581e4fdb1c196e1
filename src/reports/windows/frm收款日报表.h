#pragma once

#include "reports/windows/reportwindow.h"

namespace quorvale {

// "房产客户-基础数据表": every room of one office with address, area, kind
// and current owner, for the property customer import sheet.
class frm收款日报表 : public ReportWindow {
  public:
    explicit frm收款日报表(SessionPtr session, DesktopPtr desktop, QWidget *parent = nullptr);
};

} // namespace quorvale
