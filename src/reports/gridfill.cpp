#include "reports/gridfill.h"

#include "db/recordset.h"
#include "ui/flexgrid.h"

#include <QHash>
#include <cmath>
#include <utility>

namespace quorvale {

GridFill::GridFill(FlexGrid &grid, FillProgress progress, int chunkRows)
    : m_grid(grid), m_progress(std::move(progress)), m_chunkRows(qMax(1, chunkRows)),
      m_cols(grid.Cols())
{
    m_pending.reserve(m_chunkRows);
}

GridFill::~GridFill() = default;

void GridFill::setWidthRule(WidthRule rule)
{
    m_widthRule = std::move(rule);
    m_widths.clear();
    m_widthsChanged = false;
    if (m_widthRule) {
        m_widths.reserve(m_cols);
        for (int c = 0; c < m_cols; ++c)
            m_widths << m_grid.ColWidth(c);
    }
}

void GridFill::reset()
{
    flush();
    m_grid.setRows(1);
    m_cols = m_grid.Cols();
}

void GridFill::run(const ConnectionPtr &connection, const QString &statement,
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
                // cell leaves it in the grid with the cells before it.
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

void GridFill::add(QStringList row)
{
    if (m_widthRule) {
        const int gridRow = m_grid.Rows() + int(m_pending.size());
        const QVector<int> before = m_widths;
        m_widthRule(row, gridRow, m_widths);
        m_widthsChanged = m_widthsChanged || before != m_widths;
    }
    m_pending.append(std::move(row));
    if (m_pending.size() >= m_chunkRows)
        flush();
}

void GridFill::flush()
{
    if (m_widthsChanged) {
        for (int c = 0; c < m_widths.size() && c < m_grid.Cols(); ++c) {
            if (m_grid.ColWidth(c) != m_widths[c])
                m_grid.setColWidth(c, m_widths[c]);
        }
        m_widthsChanged = false;
    }
    if (m_pending.isEmpty())
        return;
    m_grid.appendRows(m_pending);
    m_rowsAdded += int(m_pending.size());
    m_pending.clear();
    if (m_progress)
        m_progress(m_rowsAdded);
}

WidthRule widenToRowTexts(const FlexGrid &grid, const QFont &font, int testMargin, int setMargin)
{
    return [&grid, font, testMargin, setMargin](const QStringList &row, int, QVector<int> &widths) {
        const int n = qMin(int(row.size()), int(widths.size()));
        for (int c = 0; c < n; ++c) {
            const double w = grid.TextWidth(row[c], font);
            if (w + testMargin > widths[c])
                widths[c] = int(std::lround(w + setMargin));
        }
    };
}

} // namespace quorvale
