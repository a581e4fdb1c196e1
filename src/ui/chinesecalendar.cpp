#include "ui/chinesecalendar.h"

#include <QBoxLayout>
#include <QEvent>
#include <QSpinBox>
#include <QToolButton>

namespace quorvale {

ChineseCalendar::ChineseCalendar(QWidget *parent) : QCalendarWidget(parent)
{
    // The bar's parts are Qt's own children, found by their object names.
    m_year = findChild<QToolButton *>(QStringLiteral("qt_calendar_yearbutton"));
    m_month = findChild<QToolButton *>(QStringLiteral("qt_calendar_monthbutton"));
    if (!m_year || !m_month)
        return;
    if (auto *bar = qobject_cast<QBoxLayout *>(m_month->parentWidget()->layout())) {
        bar->removeWidget(m_year);
        bar->insertWidget(bar->indexOf(m_month), m_year);
    }
    connect(this, &QCalendarWidget::currentPageChanged, this, [this] { relabel(); });
    if (auto *yearEdit = findChild<QSpinBox *>(QStringLiteral("qt_calendar_yearedit")))
        connect(yearEdit, &QSpinBox::editingFinished, this, [this] { relabel(); },
                Qt::QueuedConnection);
    relabel();
}

QString ChineseCalendar::headerText() const
{
    if (!m_year || !m_month)
        return {};
    return m_year->x() <= m_month->x() ? m_year->text() + m_month->text()
                                       : m_month->text() + m_year->text();
}

void ChineseCalendar::changeEvent(QEvent *event)
{
    QCalendarWidget::changeEvent(event);
    if (event->type() == QEvent::LocaleChange)
        relabel();
}

void ChineseCalendar::showEvent(QShowEvent *event)
{
    QCalendarWidget::showEvent(event);
    relabel();
}

void ChineseCalendar::relabel()
{
    if (!m_year || !m_month)
        return;
    m_year->setText(QString::number(yearShown()) + QStringLiteral("年"));
    m_month->setText(QString::number(monthShown()) + QStringLiteral("月"));
}

} // namespace quorvale
