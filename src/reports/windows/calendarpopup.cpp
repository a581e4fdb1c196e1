#include "reports/windows/calendarpopup.h"

#include "reports/financecontrolnames.h"
#include "ui/chinesecalendar.h"

#include <QVBoxLayout>

namespace quorvale {

CalendarPopup::CalendarPopup(QWidget *window) : QFrame(window)
{
    setObjectName(financecontrol::Picture6);
    setFrameShape(QFrame::Box);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    m_monthView = new ChineseCalendar(this);
    m_monthView->setObjectName(financecontrol::MonthView1);
    m_monthView->setGridVisible(true);
    layout->addWidget(m_monthView);
    connect(m_monthView, &QCalendarWidget::clicked, this,
            [this](const QDate &date) { dateClicked(date); });
    resize(sizeHint());
    hide();
}

void CalendarPopup::setValue(const QDate &date)
{
    m_monthView->setSelectedDate(date);
}

QDate CalendarPopup::value() const
{
    return m_monthView->selectedDate();
}

void CalendarPopup::toggleAt(int left, int top, int flipTop, const QString &tag)
{
    const QWidget *window = parentWidget();
    const QSize size = sizeHint();
    if (top + size.height() > window->height())
        top = qMax(0, flipTop - size.height());
    left = qMax(0, qMin(left, window->width() - size.width()));
    setGeometry(left, top, size.width(), size.height());
    // isHidden, not isVisible: the toggle must not depend on the window being shown.
    setVisible(isHidden());
    if (!isHidden())
        raise();
    m_tag = tag;
}

void CalendarPopup::dateClicked(const QDate &date)
{
    if (m_dateClicked)
        m_dateClicked(m_tag, date);
    hide();
}

} // namespace quorvale
