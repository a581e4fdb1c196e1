#include "dbtools/csvreader.h"

#include "runtime/runtimeerror.h"

#include <QIODevice>
#include <QStringDecoder>

namespace quorvale {

CsvReader::CsvReader(QIODevice &device, QString name) : m_device(device), m_name(std::move(name)) {}

int CsvReader::peek()
{
    if (m_pos >= m_buffer.size()) {
        m_buffer = m_device.read(1 << 16);
        m_pos = 0;
        if (m_buffer.isEmpty())
            return -1;
        if (!m_started) {
            m_started = true;
            if (m_buffer.startsWith("\xEF\xBB\xBF"))
                m_pos = 3;
            if (m_pos >= m_buffer.size())
                return peek();
        }
    }
    return static_cast<unsigned char>(m_buffer.at(m_pos));
}

int CsvReader::get()
{
    const int c = peek();
    if (c >= 0)
        ++m_pos;
    if (c == '\n')
        ++m_line;
    return c;
}

void CsvReader::fail(const QString &what, int column) const
{
    QString where = QStringLiteral("%1 line %2").arg(m_name).arg(m_recordLine);
    if (column > 0)
        where += QStringLiteral(", column %1").arg(column);
    throw RuntimeError(ErrorNumber::DatabaseError, where + QStringLiteral(": ") + what);
}

CsvField CsvReader::finish(QByteArray &bytes, bool quoted, int column) const
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    CsvField field{utf8.decode(bytes), quoted};
    if (utf8.hasError())
        fail(QStringLiteral("the text is not UTF-8"), column);
    bytes.clear();
    return field;
}

bool CsvReader::next(QList<CsvField> &record)
{
    record.clear();
    // Blank lines hold no record.
    while (peek() == '\r' || peek() == '\n')
        get();
    if (peek() < 0)
        return false;
    m_recordLine = m_line;
    QByteArray bytes;
    for (;;) {
        const int column = int(record.size()) + 1;
        if (column > maxFields)
            fail(QStringLiteral("more than %1 fields").arg(maxFields));
        const bool quoted = peek() == '"';
        if (quoted) {
            get();
            for (;;) {
                const int c = get();
                if (c < 0)
                    fail(QStringLiteral("the quoted field is not closed"), column);
                if (c == '"') {
                    if (peek() != '"')
                        break;
                    get();
                }
                bytes.append(char(c));
                if (bytes.size() > maxFieldBytes)
                    fail(QStringLiteral("a field longer than %1 bytes").arg(maxFieldBytes), column);
            }
            const int after = peek();
            if (after >= 0 && after != ',' && after != '\r' && after != '\n')
                fail(QStringLiteral("text after the closing quote"), column);
        } else {
            for (int c = peek(); c >= 0 && c != ',' && c != '\r' && c != '\n'; c = peek()) {
                if (c == '"')
                    fail(QStringLiteral("a quote inside a field that does not start with one"),
                         column);
                bytes.append(char(get()));
                if (bytes.size() > maxFieldBytes)
                    fail(QStringLiteral("a field longer than %1 bytes").arg(maxFieldBytes), column);
            }
        }
        record.append(finish(bytes, quoted, column));
        const int end = get();
        if (end == ',')
            continue;
        if (end == '\r' && peek() == '\n')
            get();
        return true;
    }
}

} // namespace quorvale
