#pragma once

#include "table/reporttable.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QHash>

namespace quorvale {

// The item model a FlexGrid shows its ReportTable through. Table rows
// 0 .. fixedRows-1 are the heading and appear as horizontal header data;
// model row i is table row i + fixedRows. The model holds no cells of its
// own, only what is the view's: the cells' background colours and whether
// it draws. The table does not know it is shown: whoever changes it tells
// the model what changed (the grid for its own changes).
//
// Reports add rows one at a time, up to a hundred thousand of them, so the
// model tells its views about changes in one batch: rowCount() reports the
// size the views were last told, and the pending changes are published when
// control returns to the event loop, when publish() is called, when rows
// are appended in a batch, or when drawing is switched back on.
class FlexGridModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    explicit FlexGridModel(const ReportTable &table, QObject *parent = nullptr);
    ~FlexGridModel() override;

    const ReportTable &table() const { return m_table; }

    QColor backColor(int row, int col) const; // invalid when never set
    void setBackColor(int row, int col, const QColor &color);

    bool isSuspended() const { return !m_drawing; }
    void setDrawing(bool on);
    void publish();
    bool hasPending() const;

    int gridRow(const QModelIndex &index) const { return index.row() + m_table.fixedRows(); }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

  Q_SIGNALS:
    // A column's width changed in the table (a fill's width rule, a window).
    void columnWidthChanged(int col);
    void drawingSwitched(bool on);

  public:
    // What changed in the table since the model last heard of it.
    void rowsChanged(int oldRows); // set to a count
    void rowsAppended();           // a batch added below the last row
    void cellChanged(int row, int col);
    void columnsChanged(int oldCols);
    void widthChanged(int col) { Q_EMIT columnWidthChanged(col); }
    void alignmentChanged(int col);
    void layoutChanged(); // fixed rows or columns
    // Anything may have changed from table row fromRow on (a compute): the
    // rows above it are as they were, and so are the colours there.
    void tableChanged(int fromRow);

  private:
    void dropColoursFrom(int row, int col);

    void markDirty(int firstRow, int lastRow, int firstCol, int lastCol);
    void markHeaderDirty(int firstCol, int lastCol);
    void schedulePublish();
    int actualBodyRows() const { return qMax(0, m_table.rows() - m_table.fixedRows()); }
    static quint64 colorKey(int row, int col)
    {
        return (quint64(quint32(row)) << 32) | quint32(col);
    }

    const ReportTable &m_table;
    QHash<quint64, QColor> m_colors;
    bool m_drawing = true;
    int m_shownFixedRows = 0;
    int m_shownFixedCols = 0;

    int m_shownRows = 0; // what the views were last told
    int m_shownCols = 0;
    int m_dirtyTop = -1; // model rows, inclusive
    int m_dirtyBottom = -1;
    int m_dirtyLeft = -1;
    int m_dirtyRight = -1;
    int m_headerLeft = -1;
    int m_headerRight = -1;
    bool m_publishQueued = false;
};

} // namespace quorvale
