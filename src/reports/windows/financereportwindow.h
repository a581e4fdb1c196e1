#pragma once

#include "reports/feecodelist.h"
#include "reports/financereportkind.h"
#include "reports/windows/financepanel.h"
#include "reports/windows/reportwindow.h"

namespace quorvale {

class CalendarPopup;

// What the four finance windows share on the report window skeleton: the
// fee-item list, the month and receipt-date controls, the drop-down calendar
// and the checks before the query. Each window only names its report.
class FinanceReportWindow : public ReportWindow {
  public:
    FinanceReportWindow(SessionPtr session, DesktopPtr desktop, FinanceReportKind kind,
                        QWidget *parent);

    void load() override;

    FinanceReportKind kind() const { return m_kind; }
    const FeeCodeList &feeCodeList() const { return m_feeCodes; }
    FinancePanel &panel() { return m_panel; }
    CalendarPopup *picture6() const { return m_picture6; }

    // A "…" button's click: the calendar under the box of the tag, toggled.
    void openCalendar(int tag);
    // MonthView1's date click: the date into the box the tag names.
    void MonthView1_DateClick(const QString &tag, const QDate &date);

  protected:
    bool prepareReport(ReportParams &params) override;
    QPair<QDate, QDate> printDateRange() const override;

  private:
    void loadFeeItems();

    FinanceReportKind m_kind;
    FinancePanel m_panel;
    CalendarPopup *m_picture6;
    FeeCodeList m_feeCodes;
};

} // namespace quorvale
