#include "reports/tablefill.h"

#include "db/recordset.h"
#include "runtime/runtimeerror.h"

#include <cmath>
#include <utility>

namespace quorvale {

TableFill::TableFill(ReportTable &table, TextWidthFn textWidth, FillProgress progress,
                     int chunkRows)
    : m_table(table), m_textWidth(std::move(textWidth)), m_progress(std::move(progress)),
      m_chunkRows(qMax(1, chunkRows)), m_cols(table.cols()), m_firstChangedRow(table.rows())
{
    m_pending.reserve(m_chunkRows);
}

TableFill::~TableFill() = default;

void TableFill::setWidthRule(WidthRule rule)
{
    m_widthRule = std::move(rule);
    m_widths.clear();
    m_widthsChanged = false;
    if (m_widthRule) {
        m_widths.reserve(m_cols);
        for (int c = 0; c < m_cols; ++c)
            m_widths << m_table.colWidth(c);
    }
}

void TableFill::setCursor(const TableCursor &cursor)
{
    setCurrentRow(cursor.currentRow);
    m_cursor.drawing = cursor.drawing;
}

void TableFill::setCurrentRow(int row)
{
    if (row < 0 || row >= m_table.rows())
        throw RuntimeError(ErrorNumber::InvalidRowValue, QStringLiteral("Invalid Row value"));
    m_cursor.currentRow = row;
}

void TableFill::reset()
{
    flush();
    m_table.setRows(1);
    m_cols = m_table.cols();
    m_firstChangedRow = qMin(m_firstChangedRow, 1);
    // The current row stays inside the table, as the grid's did.
    m_cursor.currentRow = qMin(m_cursor.currentRow, m_table.rows() - 1);
}

void TableFill::run(const ConnectionPtr &connection, const QString &statement,
                   const RowBuilder &build, EarlierRows earlier)
{
    Recordset records;
    try {
        records.Open(statement, connection, 0, 1, -1);
        if (earlier == EarlierRows::DropAfterOpen)
            reset();
        const QStringList empty(m_cols, QString());
        while (!records.eof()) {
            QStringList row = empty;
            try {
                build(records, row);
            } catch (...) {
                // The row is added before its cells are filled: a failing
                // cell leaves it in the table with the cells before it.
                add(std::move(row));
                throw;
            }
            add(std::move(row));
            records.MoveNext();
        }
    } catch (...) {
        flush();
        throw;
    }
    flush();
}

void TableFill::add(QStringList row)
{
    if (m_widthRule) {
        const int tableRow = m_table.rows() + int(m_pending.size());
        const QVector<int> before = m_widths;
        m_widthRule(row, tableRow, m_widths);
        m_widthsChanged = m_widthsChanged || before != m_widths;
    }
    m_pending.append(std::move(row));
    if (m_pending.size() >= m_chunkRows)
        flush();
}

void TableFill::flush()
{
    if (m_widthsChanged) {
        for (int c = 0; c < m_widths.size() && c < m_table.cols(); ++c)
            m_table.setColWidth(c, m_widths[c]);
        m_widthsChanged = false;
    }
    if (m_pending.isEmpty())
        return;
    m_table.appendRows(m_pending);
    m_rowsAdded += int(m_pending.size());
    m_pending.clear();
    if (m_progress)
        m_progress(m_rowsAdded);
}

WidthRule widenToRowTexts(const TextWidthFn &textWidth, int testMargin, int setMargin)
{
    return [textWidth, testMargin, setMargin](const QStringList &row, int, QVector<int> &widths) {
        const int n = qMin(int(row.size()), int(widths.size()));
        for (int c = 0; c < n; ++c) {
            const double w = textWidth(row[c]);
            if (w + testMargin > widths[c])
                widths[c] = int(std::lround(w + setMargin));
        }
    };
}

} // namespace quorvale
