#pragma once

#include "reports/financereportkind.h"

#include <QDate>

class QComboBox;
class QDateEdit;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace quorvale {

struct ReportParams;

// The finance windows' own controls inside Picture2: Combo3 with its fee
// items, the month boxes with their Option1 modes and "…" buttons, and either
// the cut-off box Text2 (arrears) or Frame1 with the Option2 receipt modes and
// DTPicker1..3 (advance receipts). Option buttons of one array share the
// objectName and carry their index in the "index" property, like Command1.
class FinancePanel {
  public:
    FinancePanel(QFrame *picture2, FinanceReportKind kind);

    // The load defaults: months of today, Text2 as "YYYY/MM/dd", the pickers
    // on today with the cut-off mode enabled.
    void setDefaults(const QDate &today);
    // Option2's click: the cut-off picker or the two range pickers.
    void applyReceiptMode();
    // The months and receipt dates as the controls hold them.
    void readInto(ReportParams &params) const;

    // The date box a calendar tag names (1 Text1, 2 Text2, 3 Text3, 4 Text4);
    // null for a tag this window has no box for.
    QLineEdit *boxForTag(int tag) const;
    // The "…" button that opens the calendar for a tag, and the tags in order.
    QPushButton *calendarButton(int tag) const;
    QList<int> calendarTags() const;

    QComboBox *combo3() const { return m_combo3; }
    QRadioButton *option1(int index) const { return m_option1[index]; }
    QRadioButton *option2(int index) const { return m_option2[index]; }
    QDateEdit *dtPicker(int number) const { return m_dtPicker[number - 1]; }

  private:
    bool m_advance;
    QComboBox *m_combo3 = nullptr;
    QRadioButton *m_option1[2] = {};
    QRadioButton *m_option2[2] = {};
    QLineEdit *m_text[4] = {};             // Text1..Text4
    QPushButton *m_calendarButton[4] = {}; // by tag 1..4
    QDateEdit *m_dtPicker[3] = {};
    QGroupBox *m_frame1 = nullptr;
};

} // namespace quorvale
