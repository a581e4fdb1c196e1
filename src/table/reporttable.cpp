#include "table/reporttable.h"

#include "runtime/runtimeerror.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quorvale {

namespace {

constexpr int DefaultColTwips = 960;
// A format string widens each column by a little more than the text itself.
constexpr int FormatMarginTwips = 120;

// A packed row is a run per filled cell: the column, the text's length (one
// char, or a marker and two chars for texts of 65535 chars and more), the text.
constexpr char16_t LongLength = 0xFFFF;

struct Run {
    int col = 0;
    qsizetype begin = 0; // the run's first char
    qsizetype text = 0;  // the text's first char
    qsizetype length = 0;
    qsizetype end = 0;
};

bool nextRun(const QString &row, qsizetype pos, Run &run)
{
    if (pos >= row.size())
        return false;
    run.begin = pos;
    run.col = row.at(pos).unicode();
    const char16_t length = row.at(pos + 1).unicode();
    if (length == LongLength) {
        run.length = (qsizetype(row.at(pos + 2).unicode()) << 16) | row.at(pos + 3).unicode();
        run.text = pos + 4;
    } else {
        run.length = length;
        run.text = pos + 2;
    }
    run.end = run.text + run.length;
    return true;
}

qsizetype runSize(QStringView text)
{
    return text.size() + (text.size() >= LongLength ? 4 : 2);
}

// Writes one run at out and returns the char after it; the caller has sized the row.
QChar *writeRun(QChar *out, int col, QStringView text)
{
    *out++ = QChar(char16_t(col));
    if (text.size() >= LongLength) {
        *out++ = QChar(LongLength);
        *out++ = QChar(char16_t(quint32(text.size()) >> 16));
        *out++ = QChar(char16_t(quint32(text.size()) & 0xFFFF));
    } else {
        *out++ = QChar(char16_t(text.size()));
    }
    std::copy(text.begin(), text.end(), out);
    return out + text.size();
}

// Rows are packed once per row on the fill's path: sized first, then written in place.
QString packedRow(const QStringList &texts, int cols)
{
    qsizetype size = 0;
    const int n = std::min(int(texts.size()), cols);
    for (int c = 0; c < n; ++c)
        if (!texts[c].isEmpty())
            size += runSize(texts[c]);
    if (size == 0)
        return {};
    QString row(size, Qt::Uninitialized);
    QChar *out = row.data();
    for (int c = 0; c < n; ++c)
        if (!texts[c].isEmpty())
            out = writeRun(out, c, texts[c]);
    return row;
}

[[noreturn]] void outOfRange()
{
    throw RuntimeError(ErrorNumber::InvalidPropertyArrayIndex,
                       QStringLiteral("Subscript out of range"));
}

[[noreturn]] void invalidRow()
{
    throw RuntimeError(ErrorNumber::InvalidRowValue, QStringLiteral("Invalid Row value"));
}

[[noreturn]] void invalidCol()
{
    throw RuntimeError(ErrorNumber::InvalidColValue, QStringLiteral("Invalid Col value"));
}

} // namespace

ReportTable::ReportTable()
    : m_rows(2), m_widths(2, DefaultColTwips), m_alignments(2, FlexAlign::General)
{
}

void ReportTable::checkRow(int row) const
{
    if (row < 0 || row >= rows())
        outOfRange();
}

void ReportTable::checkCol(int col) const
{
    if (col < 0 || col >= m_cols)
        outOfRange();
}

void ReportTable::setRows(int rows)
{
    if (rows < m_fixedRows)
        invalidRow();
    const int old = this->rows();
    if (rows == old)
        return;
    m_rows.resize(size_t(rows));
    if (rows < old)
        m_rows.shrink_to_fit(); // a table cut back to its heading gives its rows back
}

void ReportTable::setCols(int cols)
{
    if (cols < m_fixedCols)
        invalidCol();
    if (cols == m_cols)
        return;
    if (cols < m_cols) {
        for (QString &row : m_rows) {
            Run run;
            for (qsizetype pos = 0; nextRun(row, pos, run); pos = run.end) {
                if (run.col >= cols) {
                    row.truncate(run.begin);
                    break;
                }
            }
        }
    }
    m_cols = cols;
    m_widths.resize(cols, DefaultColTwips);
    m_alignments.resize(cols, FlexAlign::General);
}

void ReportTable::setFixedRows(int rows)
{
    if (rows < 0 || rows > 2)
        invalidRow();
    if (rows == m_fixedRows)
        return;
    if (this->rows() < rows)
        m_rows.resize(size_t(rows));
    m_fixedRows = rows;
}

void ReportTable::setFixedCols(int cols)
{
    if (cols < 0 || cols > m_cols)
        invalidCol();
    if (cols == m_fixedCols)
        return;
    m_fixedCols = cols;
}

QString ReportTable::text(int row, int col) const
{
    checkRow(row);
    checkCol(col);
    const QString &packed = m_rows[size_t(row)];
    Run run;
    for (qsizetype pos = 0; nextRun(packed, pos, run); pos = run.end) {
        if (run.col == col)
            return packed.mid(run.text, run.length);
        if (run.col > col)
            break;
    }
    return {};
}

void ReportTable::readRow(int row, QStringList &texts) const
{
    checkRow(row);
    texts.resize(m_cols);
    for (QString &text : texts)
        text.clear();
    const QString &packed = m_rows[size_t(row)];
    Run run;
    for (qsizetype pos = 0; nextRun(packed, pos, run); pos = run.end)
        if (run.col < m_cols)
            texts[run.col] = packed.mid(run.text, run.length);
}

void ReportTable::setText(int row, int col, const QString &text)
{
    checkRow(row);
    checkCol(col);
    QString &packed = m_rows[size_t(row)];
    Run run;
    qsizetype at = packed.size(); // where the cell's run is, or goes
    qsizetype cut = at;
    for (qsizetype pos = 0; nextRun(packed, pos, run); pos = run.end) {
        if (run.col == col) {
            if (QStringView(packed).sliced(run.text, run.length) == text)
                return;
            at = run.begin;
            cut = run.end;
            break;
        }
        if (run.col > col) {
            at = cut = run.begin;
            break;
        }
    }
    if (text.isEmpty()) {
        packed.remove(at, cut - at);
    } else {
        // The run is written in place; the cells after it move to make room.
        const qsizetype tail = packed.size() - cut;
        const qsizetype size = at + runSize(text) + tail;
        if (size > packed.size())
            packed.resize(size);
        QChar *data = packed.data();
        std::memmove(data + size - tail, data + cut, size_t(tail) * sizeof(QChar));
        writeRun(data + at, col, text);
        packed.truncate(size);
    }
    if (packed.isEmpty())
        packed = QString();
}

void ReportTable::appendRows(const QVector<QStringList> &rows)
{
    if (rows.isEmpty())
        return;
    m_rows.reserve(m_rows.size() + size_t(rows.size()));
    for (const QStringList &texts : rows)
        m_rows.push_back(packedRow(texts, m_cols));
}

int ReportTable::colWidth(int col) const
{
    checkCol(col);
    return m_widths[col];
}

void ReportTable::setColWidth(int col, int twips)
{
    checkCol(col);
    const int width = twips < 0 ? DefaultColTwips : twips;
    if (m_widths[col] == width)
        return;
    m_widths[col] = width;
}

int ReportTable::alignment(int col) const
{
    checkCol(col);
    return m_alignments[col];
}

void ReportTable::setAlignment(int col, int alignment)
{
    checkCol(col);
    if (alignment < FlexAlign::LeftTop || alignment > FlexAlign::General)
        throw RuntimeError(ErrorNumber::InvalidPropertyValue,
                           QStringLiteral("Invalid property value"));
    if (m_alignments[col] == alignment)
        return;
    m_alignments[col] = alignment;
}

void ReportTable::setFormatString(const QString &format, const TextWidthFn &textWidth)
{
    const QStringList columns = format.split(QLatin1Char('|'));
    setCols(int(columns.size()));
    if (rows() < 1)
        setRows(1);
    for (int c = 0; c < columns.size(); ++c) {
        QString text = columns[c];
        int alignment = FlexAlign::General;
        if (text.startsWith(QLatin1Char('<')))
            alignment = FlexAlign::LeftCenter;
        else if (text.startsWith(QLatin1Char('>')))
            alignment = FlexAlign::RightCenter;
        else if (text.startsWith(QLatin1Char('^')))
            alignment = FlexAlign::CenterCenter;
        if (alignment != FlexAlign::General)
            text.remove(0, 1);
        setAlignment(c, alignment);
        setText(0, c, text);
        setColWidth(c, int(std::lround(textWidth(text))) + FormatMarginTwips);
    }
    m_formatString = format;
}

} // namespace quorvale
