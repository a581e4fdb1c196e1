#pragma once

#include <QCalendarWidget>

class QToolButton;

namespace quorvale {

// The month calendar of the pickers and MonthView1, headed the way Chinese
// dates are read: the year before the month, "2026年" "11月", where Qt puts
// the month name first. Day names and the month menu follow the locale.
class ChineseCalendar : public QCalendarWidget {
  public:
    explicit ChineseCalendar(QWidget *parent = nullptr);

    // The navigation bar's texts in their order, e.g. "2026年11月".
    QString headerText() const;

  protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

  private:
    // Qt writes its own texts back whenever it updates the bar.
    void relabel();

    QToolButton *m_year = nullptr;
    QToolButton *m_month = nullptr;
};

} // namespace quorvale
