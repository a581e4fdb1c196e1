#include "tools/tableprinter.h"

namespace quorvale {

namespace {

bool isWide(char32_t c)
{
    return (c >= 0x1100 && c <= 0x115f) || (c >= 0x2e80 && c <= 0x303e) ||
           (c >= 0x3041 && c <= 0x33ff) || (c >= 0x3400 && c <= 0x4dbf) ||
           (c >= 0x4e00 && c <= 0x9fff) || (c >= 0xa000 && c <= 0xa4cf) ||
           (c >= 0xac00 && c <= 0xd7a3) || (c >= 0xf900 && c <= 0xfaff) ||
           (c >= 0xfe30 && c <= 0xfe4f) || (c >= 0xff00 && c <= 0xff60) ||
           (c >= 0xffe0 && c <= 0xffe6) || (c >= 0x20000 && c <= 0x3fffd);
}

// A line break or tab inside a value would break the columns.
QString cellText(const Field &field)
{
    if (field.isNull())
        return QStringLiteral("NULL");
    QString text = field.text();
    for (QChar &c : text)
        if (c.unicode() < 0x20)
            c = QLatin1Char(' ');
    return text;
}

QString padded(const QString &text, int width, bool right)
{
    const QString fill(qMax(0, width - displayWidth(text)), QLatin1Char(' '));
    return right ? fill + text : text + fill;
}

} // namespace

int displayWidth(const QString &text)
{
    int width = 0;
    for (char32_t c : text.toUcs4()) {
        if (QChar::isMark(c))
            continue;
        width += isWide(c) ? 2 : 1;
    }
    return width;
}

void TablePrinter::beginRows(const QList<TsqlColumn> &columns)
{
    m_columns = columns;
    m_widths.clear();
    for (const TsqlColumn &c : columns)
        m_widths << displayWidth(c.name);
    m_held.clear();
    m_rows = 0;
    m_headPrinted = false;
}

void TablePrinter::row(const QList<Field> &fields)
{
    QStringList texts;
    for (const Field &f : fields)
        texts << cellText(f);
    ++m_rows;
    if (m_headPrinted) {
        printLine(texts);
        return;
    }
    for (qsizetype i = 0; i < texts.size() && i < m_widths.size(); ++i)
        m_widths[i] = qMax(m_widths[i], displayWidth(texts.at(i)));
    m_held << texts;
    if (m_held.size() >= rowsMeasured)
        printHead();
}

void TablePrinter::endRows()
{
    if (!m_headPrinted)
        printHead();
    m_out << '(' << m_rows << (m_rows == 1 ? " row)\n\n" : " rows)\n\n");
    m_out.flush();
}

void TablePrinter::rowsAffected(qint64 count)
{
    m_out << '(' << count << (count == 1 ? " row affected)\n" : " rows affected)\n");
}

void TablePrinter::printHead()
{
    QStringList names;
    QStringList rules;
    for (qsizetype i = 0; i < m_columns.size(); ++i) {
        names << m_columns.at(i).name;
        rules << QString(m_widths.at(i), QLatin1Char('-'));
    }
    m_headPrinted = true;
    printLine(names);
    printLine(rules);
    for (const QStringList &texts : std::as_const(m_held))
        printLine(texts);
    m_held.clear();
}

void TablePrinter::printLine(const QStringList &texts)
{
    QString line;
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (i > 0)
            line += QLatin1String("  ");
        const bool right = m_columns.value(i).kind == FieldKind::Number;
        line += padded(texts.at(i), m_widths.value(i), right);
    }
    // No blanks at the end of a line: they only widen a terminal's copy.
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    m_out << line << '\n';
}

} // namespace quorvale
