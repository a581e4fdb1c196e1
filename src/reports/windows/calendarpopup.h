#pragma once

#include <QDate>
#include <QFrame>
#include <functional>

class QCalendarWidget;

namespace quorvale {

// Picture6 holding MonthView1: the drop-down calendar the finance windows
// share among their date boxes. A "…" button places it under its box,
// toggles it (a second click on any button hides it) and sets the tag naming
// the box; a date click hands the tag and the date on and hides it.
class CalendarPopup : public QFrame {
  public:
    using DateClicked = std::function<void(const QString &tag, const QDate &date)>;

    explicit CalendarPopup(QWidget *window);

    QCalendarWidget *monthView() const { return m_monthView; }
    QString tag() const { return m_tag; }

    void setValue(const QDate &date);
    QDate value() const;
    void onDateClicked(DateClicked handler) { m_dateClicked = std::move(handler); }

    // Moves the calendar to (left, top) in the window, toggles it and sets
    // the tag. When it would hang below the window it opens upwards from
    // flipTop instead, so that it stays usable in a maximised window.
    void toggleAt(int left, int top, int flipTop, const QString &tag);

  private:
    void dateClicked(const QDate &date);

    QCalendarWidget *m_monthView;
    QString m_tag;
    DateClicked m_dateClicked;
};

} // namespace quorvale
