#include "xlsx/xlsxformula.h"

#include <optional>

namespace quorvale::xlsx {

namespace {

constexpr int MaxRow = 1048576;
constexpr int MaxCol = 16384;

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'.' || c == u'$' || c == u'\\' || c == u'?';
}

bool isAsciiLetter(QChar c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

// One end of a reference: a column, a row, or both, each possibly absolute.
struct RefEnd {
    int col = 0, row = 0; // 0: not part of this end
    bool colAbsolute = false, rowAbsolute = false;
};

// "$A$1", "A1", "$A", "12", "$12"; nullopt for any other word.
std::optional<RefEnd> parseRefEnd(QStringView word)
{
    RefEnd end;
    qsizetype i = 0;
    if (i < word.size() && word[i] == u'$' && i + 1 < word.size() && isAsciiLetter(word[i + 1])) {
        end.colAbsolute = true;
        ++i;
    }
    const qsizetype letters = i;
    while (i < word.size() && isAsciiLetter(word[i]) && i - letters < 4)
        end.col = end.col * 26 + (word[i++].toUpper().unicode() - u'A' + 1);
    if (i - letters > 3 || end.col > MaxCol)
        return std::nullopt;
    if (i < word.size() && word[i] == u'$') {
        end.rowAbsolute = true;
        ++i;
    }
    const qsizetype digits = i;
    while (i < word.size() && word[i] >= u'0' && word[i] <= u'9' && i - digits < 8)
        end.row = end.row * 10 + (word[i++].unicode() - u'0');
    if (i != word.size() || (end.row == 0 && end.col == 0) || end.row > MaxRow)
        return std::nullopt;
    if (i == digits && end.rowAbsolute) // "$A$" is no reference
        return std::nullopt;
    if (digits == i && end.row == 0 && end.col == 0)
        return std::nullopt;
    if (i > digits && end.row == 0) // row 0 does not exist
        return std::nullopt;
    return end;
}

QString columnLetters(int col)
{
    QString out;
    while (col > 0) {
        out.prepend(QChar(u'A' + (col - 1) % 26));
        col = (col - 1) / 26;
    }
    return out;
}

// The end moved, or nullopt when it leaves the sheet.
std::optional<QString> moved(RefEnd end, int rows, int cols)
{
    if (end.col && !end.colAbsolute)
        end.col += cols;
    if (end.row && !end.rowAbsolute)
        end.row += rows;
    if ((end.col && (end.col < 1 || end.col > MaxCol)) ||
        (end.row && (end.row < 1 || end.row > MaxRow)))
        return std::nullopt;
    QString out;
    if (end.col)
        out += (end.colAbsolute ? QStringLiteral("$") : QString()) + columnLetters(end.col);
    if (end.row)
        out += (end.rowAbsolute ? QStringLiteral("$") : QString()) + QString::number(end.row);
    return out;
}

// Copies a quoted run ("text" or 'sheet name', the quote doubled inside).
qsizetype quotedEnd(QStringView f, qsizetype i)
{
    const QChar quote = f[i];
    for (++i; i < f.size(); ++i) {
        if (f[i] != quote)
            continue;
        if (i + 1 < f.size() && f[i + 1] == quote)
            ++i;
        else
            return i + 1;
    }
    return f.size();
}

qsizetype bracketEnd(QStringView f, qsizetype i)
{
    int depth = 0;
    for (; i < f.size(); ++i) {
        if (f[i] == u'[')
            ++depth;
        else if (f[i] == u']' && --depth == 0)
            return i + 1;
    }
    return f.size();
}

qsizetype wordEnd(QStringView f, qsizetype i)
{
    while (i < f.size() && isWordChar(f[i]))
        ++i;
    return i;
}

} // namespace

QString shiftedFormula(QStringView f, int rows, int cols)
{
    QString out;
    out.reserve(f.size() + 8);
    qsizetype i = 0;
    while (i < f.size()) {
        const QChar c = f[i];
        if (c == u'"' || c == u'\'') {
            const qsizetype end = quotedEnd(f, i);
            out += f.sliced(i, end - i);
            i = end;
            continue;
        }
        if (c == u'[') {
            const qsizetype end = bracketEnd(f, i);
            out += f.sliced(i, end - i);
            i = end;
            continue;
        }
        if (c == u'#') { // an error value such as #REF! or #N/A
            qsizetype end = i + 1;
            while (end < f.size() && (f[end].isLetterOrNumber() || f[end] == u'/' ||
                                      f[end] == u'!' || f[end] == u'?'))
                ++end;
            out += f.sliced(i, end - i);
            i = end;
            continue;
        }
        if (!isWordChar(c)) {
            out += c;
            ++i;
            continue;
        }
        const qsizetype end = wordEnd(f, i);
        const QStringView word = f.sliced(i, end - i);
        const QChar next = end < f.size() ? f[end] : QChar();
        std::optional<RefEnd> first;
        if (next != u'(' && next != u'!' && !word.front().isDigit())
            first = parseRefEnd(word);
        else if (next == u':' && word.front().isDigit())
            first = parseRefEnd(word); // a row range such as 3:5
        if (!first) {
            out += word;
            i = end;
            continue;
        }
        // A range joins two ends of the same kind: A1:B2, A:C or 3:5.
        std::optional<RefEnd> second;
        qsizetype after = end;
        if (next == u':' && end + 1 < f.size() && isWordChar(f[end + 1])) {
            const qsizetype end2 = wordEnd(f, end + 1);
            second = parseRefEnd(f.sliced(end + 1, end2 - end - 1));
            if (second &&
                (bool(second->col) != bool(first->col) || bool(second->row) != bool(first->row)))
                second.reset();
            if (second)
                after = end2;
        }
        const bool whole = !first->col || !first->row;
        if (whole && !second) { // a lone column or row number is a name or a number
            out += word;
            i = end;
            continue;
        }
        const std::optional<QString> a = moved(*first, rows, cols);
        const std::optional<QString> b = second ? moved(*second, rows, cols) : QString();
        if (!a || !b)
            out += QStringLiteral("#REF!");
        else
            out += second ? *a + u':' + *b : *a;
        i = after;
    }
    return out;
}

} // namespace quorvale::xlsx
