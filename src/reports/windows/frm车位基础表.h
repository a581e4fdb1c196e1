#pragma once

#include "reports/windows/reportwindow.h"

namespace quorvale {

// "车位客户-基础数据表": every parking space of one office with its car park,
// current applicant or owner and date, for the parking customer import sheet.
class frm车位基础表 : public ReportWindow {
  public:
    explicit frm车位基础表(SessionPtr session, DesktopPtr desktop, QWidget *parent = nullptr);
};

} // namespace quorvale
