#include "dbtools/csvprinter.h"

namespace quorvale {

QString csvField(const QString &text)
{
    const bool plain = !text.isEmpty() && !text.contains(QLatin1Char(',')) &&
                       !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n')) &&
                       !text.contains(QLatin1Char('\r')) && !text.front().isSpace() &&
                       !text.back().isSpace();
    if (plain)
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

void CsvPrinter::beginRows(const QList<TsqlColumn> &columns)
{
    if (m_results++ > 0)
        m_out << "\r\n";
    QStringList names;
    for (const TsqlColumn &c : columns)
        names << csvField(c.name);
    m_out << names.join(QLatin1Char(',')) << "\r\n";
}

void CsvPrinter::row(const QList<Field> &fields)
{
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0)
            m_out << ',';
        if (!fields.at(i).isNull())
            m_out << csvField(fields.at(i).text());
    }
    m_out << "\r\n";
}

void CsvPrinter::endRows()
{
    m_out.flush();
}

void CsvPrinter::rowsAffected(qint64 count)
{
    m_notes << '(' << count << (count == 1 ? " row affected)\n" : " rows affected)\n");
    m_notes.flush();
}

} // namespace quorvale
