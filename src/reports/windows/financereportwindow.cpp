#include "reports/windows/financereportwindow.h"

#include "reports/financecheck.h"
#include "reports/financereport.h"
#include "reports/financereporttraits.h"
#include "reports/windows/calendarpopup.h"
#include "runtime/vb.h"
#include "ui/desktop.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QResizeEvent>

namespace quorvale {

namespace {

const QString kCutOffCalendarFormat = QStringLiteral("yyyy-MM-dd");

} // namespace

FinanceReportWindow::FinanceReportWindow(SessionPtr session, DesktopPtr desktop,
                                         FinanceReportKind kind, QWidget *parent)
    : ReportWindow(std::move(session), std::move(desktop), financeReportDefinition(kind), parent),
      m_kind(kind), m_panel(picture2(), kind), m_picture6(new CalendarPopup(this))
{
    for (int tag : m_panel.calendarTags())
        connect(m_panel.calendarButton(tag), &QPushButton::clicked, this,
                [this, tag] { openCalendar(tag); });
    m_picture6->onDateClicked(
        [this](const QString &tag, const QDate &date) { MonthView1_DateClick(tag, date); });
    // The strip took its height while the panel was empty and its layout
    // still caches that; drop the cached hints and lay the strip out again.
    picture2()->updateGeometry();
    picture1()->layout()->invalidate();
    QResizeEvent resized(size(), size());
    resizeEvent(&resized);
}

void FinanceReportWindow::load()
{
    trapped([this] {
        const QDate today = desktop().date();
        fillStatusBar();
        if (financeTraits(m_kind).advance) {
            fillOfficeList();
            loadFeeItems();
            setGridHeader();
            m_picture6->setValue(today);
            m_panel.setDefaults(today);
        } else {
            m_picture6->setValue(today);
            m_panel.setDefaults(today);
            loadFeeItems();
            setGridHeader();
            fillOfficeList();
        }
    });
}

void FinanceReportWindow::loadFeeItems()
{
    m_feeCodes = FeeCodeList::load(financeTraits(m_kind).category, session()->connection());
    m_panel.combo3()->clear();
    m_panel.combo3()->addItems(m_feeCodes.entries());
}

void FinanceReportWindow::openCalendar(int tag)
{
    QLineEdit *box = m_panel.boxForTag(tag);
    QFrame *strip = picture1();
    QFrame *inner = picture2();
    // The box's left within Picture2, moved into the window; the advance
    // windows add Picture1's left as well.
    int left = box->x() + inner->x();
    if (financeTraits(m_kind).advance)
        left += strip->x();
    const int top = inner->y() + inner->height() + strip->y();
    m_picture6->toggleAt(left, top, strip->y() + inner->y(), QString::number(tag));
}

void FinanceReportWindow::MonthView1_DateClick(const QString &tag, const QDate &date)
{
    const int number = int(vbrt::Val(tag));
    const bool advance = financeTraits(m_kind).advance;
    if (QLineEdit *box = m_panel.boxForTag(number)) {
        box->setText(number == 2 ? date.toString(kCutOffCalendarFormat)
                                 : vbrt::formatYearMonth(date));
        if (advance)
            box->setFocus();
    }
    m_picture6->hide();
}

bool FinanceReportWindow::prepareReport(ReportParams &params)
{
    params.feeCodeList = m_feeCodes.text();
    m_panel.readInto(params);
    const FinanceCheck check = checkFinanceInput(m_kind, params);
    if (check.outcome == FinanceCheck::Outcome::Refuse) {
        desktop().msgBox(check.message, check.style, check.title);
        if (!check.focusControl.isEmpty()) {
            if (auto *control = findChild<QWidget *>(check.focusControl))
                control->setFocus();
        }
    }
    return check.proceeds();
}

QPair<QDate, QDate> FinanceReportWindow::printDateRange() const
{
    if (!financeTraits(m_kind).printWithPickers)
        return ReportWindow::printDateRange();
    return {m_panel.dtPicker(1)->date(), m_panel.dtPicker(2)->date()};
}

} // namespace quorvale
