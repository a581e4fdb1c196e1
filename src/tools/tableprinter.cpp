#include "tools/tableprinter.h"

#include "tools/consoletext.h"

namespace quorvale {

namespace {

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
