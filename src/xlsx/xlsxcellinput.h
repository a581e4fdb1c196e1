#pragma once

#include <QString>

namespace quorvale::xlsx {

// What Excel makes of text typed into a cell: a number, a date, a date with a
// time, or text. A leading apostrophe forces text and is not stored. Two
// things Excel would lose stay text: a digit string longer than the 15
// significant digits a number keeps (identity-card and account numbers),
// and a date before the workbook's first day.
class CellInput {
public:
    enum class Kind : unsigned char { Empty, Number, Date, DateTime, Text, QuotedText };
    // Where a workbook's date serials start: 1899-12-30 (with Excel's phantom
    // 1900-02-29) or 1904-01-01.
    enum class DateSystem : unsigned char { From1900, From1904 };

    static CellInput interpret(const QString &text, DateSystem dates = DateSystem::From1900);
    // The text a cell of this kind shows with the formats the export gives it.
    static QString displayText(Kind kind, double number, DateSystem dates);

    Kind kind = Kind::Empty;
    double number = 0; // value, or date serial in the workbook's date system
    QString text;      // Text and QuotedText, without the apostrophe
};

} // namespace quorvale::xlsx
