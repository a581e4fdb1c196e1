#pragma once

#include <QDate>
#include <QString>

namespace quorvale {

// What a compute procedure needs besides the connection and the grid: the
// office, and for the finance reports the months and receipt dates as the
// window's controls hold them (texts spliced as typed). Filled by a report
// window, the batch export or a test.
struct ReportParams {
    QString officeCode; // Combo1's text before its first blank
    QString officeName; // Combo1's text after its first blank

    QString feeCodeList;       // quoted, comma-separated fee-item codes
    bool monthRange = false;   // Option1(1): Text3..Text4 instead of Text1
    QString month;             // Text1, "YYYYMM"
    QString firstMonth;        // Text3
    QString lastMonth;         // Text4
    QString receiptCutOffText; // Text2 as typed (arrears windows)
    bool receiptRange = false; // Option2(1): DTPicker1..DTPicker2 instead of DTPicker3
    QDate receiptCutOff;       // DTPicker3
    QDate receiptFrom;         // DTPicker1
    QDate receiptTo;           // DTPicker2
};

// The months and receipt dates the finance windows show when they load:
// this month, and today as the cut-off text ("YYYY/MM/dd") and in every picker.
ReportParams windowLoadDefaults(const QDate &today);

} // namespace quorvale
