#pragma once

#include <QString>

namespace quorvale {

class Recordset;

// The office statement differs between windows only in the blanks before
// "Order By"; each window keeps its own.
enum class OfficeQueryStyle {
    Property, // frm收款日报表
    Parking,  // frm车位基础表
    Finance,  // the four finance windows
};

// The statement that fills Combo1: every office for a user with the audit
// right, otherwise the offices run by the user's department.
QString officeStatement(OfficeQueryStyle style, bool hasProjectAudit, const QString &deptCode);

// Combo1's item text: code, one blank, name.
QString officeItemText(const QString &code, const QString &name);
// The office code (text before the first blank) and name (text after it).
QString officeCodeOf(const QString &itemText);
QString officeNameOf(const QString &itemText);

// One Combo1 entry: its text and its item data, the office's 商用物业 flag
// (Null counts as 0).
struct OfficeItem {
    QString text;
    int commercial = 0;
};
// The entry for the office record the recordset stands on.
OfficeItem officeItemOf(const Recordset &record);

} // namespace quorvale
