#pragma once

#include "db/connection.h"
#include "table/reporttable.h"

#include <QStringList>
#include <QVector>
#include <functional>
#include <utility>

namespace quorvale {

class Recordset;

// Called after each chunk of rows reached the table, with the rows added so far.
using FillProgress = std::function<void(int rowsFilled)>;
// Fills one table row from the current record; row holds cols() empty texts.
using RowBuilder = std::function<void(const Recordset &record, QStringList &row)>;
// Widens columns for one row before it reaches the table: widths are the
// columns' widths in twips, tableRow the row number the row will get.
using WidthRule = std::function<void(const QStringList &row, int tableRow, QVector<int> &widths)>;

// What a fill reads of the view that shows its table and leaves to it: the
// current row, which some reports measure and move, and whether the view
// draws while rows arrive.
struct TableCursor {
    int currentRow = 0;
    bool drawing = true;
};

// The fill engine every report shares: rows are built as texts and handed to
// the table in chunks, so a large result neither repaints per cell nor
// freezes the window between chunks. Rows built before a failing record,
// and that record's row filled up to the failing cell, always reach the
// table before the error travels on. Text widths are measured with the
// window's font (textWidth).
class TableFill {
  public:
    static constexpr int DefaultChunkRows = 2000;

    TableFill(ReportTable &table, TextWidthFn textWidth, FillProgress progress = {},
              int chunkRows = DefaultChunkRows);
    ~TableFill();
    TableFill(const TableFill &) = delete;
    TableFill &operator=(const TableFill &) = delete;

    ReportTable &table() const { return m_table; }
    const TextWidthFn &textWidth() const { return m_textWidth; }
    void setWidthRule(WidthRule rule);
    void setProgress(FillProgress progress) { m_progress = std::move(progress); }

    // Starts from the view's; a row outside the table throws as the grid's Row did.
    const TableCursor &cursor() const { return m_cursor; }
    void setCursor(const TableCursor &cursor);
    void setCurrentRow(int row);
    void setDrawing(bool on) { m_cursor.drawing = on; }
    // The first table row that may differ from before the fill: the rows
    // above it are as they were, so a view keeps what it holds for them.
    int firstChangedRow() const { return m_firstChangedRow; }

    enum class EarlierRows { Keep, DropAfterOpen };
    // Opens the statement forward-only and read-only and adds one row per
    // record. DropAfterOpen drops the earlier rows once the statement is
    // open, so a statement that fails to open leaves the table as it was.
    // Database and row errors are thrown as RuntimeError.
    void run(const ConnectionPtr &connection, const QString &statement, const RowBuilder &build,
             EarlierRows earlier = EarlierRows::Keep);
    // Adds one built row; a full chunk goes to the table.
    void add(QStringList row);
    // Hands the pending rows and any widened columns to the table.
    void flush();

    int rowsAdded() const { return m_rowsAdded; }
    int cols() const { return m_cols; }

  private:
    // Drops every row below the heading (rows = 1).
    void reset();

    ReportTable &m_table;
    TextWidthFn m_textWidth;
    FillProgress m_progress;
    int m_chunkRows;
    int m_cols;
    int m_rowsAdded = 0;
    TableCursor m_cursor;
    int m_firstChangedRow;
    QVector<QStringList> m_pending;
    WidthRule m_widthRule;
    QVector<int> m_widths;
    bool m_widthsChanged = false;
};

// The widening rule of the finance windows, measured on the row being added:
// when a cell's text width + testMargin exceeds the column's width, the
// column becomes text width + setMargin. Text widths are measured once per
// distinct text.
WidthRule widenToRowTexts(const TextWidthFn &textWidth, int testMargin, int setMargin);

} // namespace quorvale
