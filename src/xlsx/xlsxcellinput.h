#pragma once

#include <QString>

namespace quorvale::xlsx {

// What Excel makes of text typed into a cell: a number, a date, a date with a
// time, or text. A leading apostrophe forces text and is not stored.
class CellInput {
public:
    enum class Kind : unsigned char { Empty, Number, Date, DateTime, Text, QuotedText };

    static CellInput interpret(const QString &text);

    Kind kind = Kind::Empty;
    double number = 0; // value, or date serial (days since 1899-12-30)
    QString text;      // Text and QuotedText, without the apostrophe
};

} // namespace quorvale::xlsx
