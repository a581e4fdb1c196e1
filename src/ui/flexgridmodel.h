#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QHash>
#include <QStringList>
#include <QVector>

namespace quorvale {

// The cells of a FlexGrid. Grid rows 0 .. fixedRows-1 are the heading and
// appear as horizontal header data; model row i is grid row i + fixedRows.
//
// Reports add rows one at a time, up to a hundred thousand of them, so the
// model tells its views about changes in one batch: rowCount() reports the
// size the views were last told, and the pending changes are published when
// control returns to the event loop, when publish() is called, or when a
// suspension ends. Only filled cells take memory.
class FlexGridModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    explicit FlexGridModel(QObject *parent = nullptr);

    int rows() const { return int(m_rows.size()); }
    void setRows(int rows);
    int cols() const { return m_cols; }
    void setCols(int cols);
    int fixedRows() const { return m_fixedRows; }
    void setFixedRows(int rows);
    int fixedCols() const { return m_fixedCols; }
    void setFixedCols(int cols);

    QString text(int row, int col) const;
    void setText(int row, int col, const QString &text);
    void appendRows(const QVector<QStringList> &rows);

    int alignment(int col) const;
    void setAlignment(int col, int alignment);

    QColor backColor(int row, int col) const; // invalid when never set
    void setBackColor(int row, int col, const QColor &color);

    // While suspended nothing is published, not even from the event loop.
    void setSuspended(bool suspended);
    bool isSuspended() const { return m_suspended; }
    void publish();
    bool hasPending() const;

    int gridRow(const QModelIndex &index) const { return index.row() + m_fixedRows; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

  private:
    struct Cell {
        int col;
        QString text;
    };
    using RowCells = QVector<Cell>; // sorted by column, empty texts not stored

    void markDirty(int firstRow, int lastRow, int firstCol, int lastCol);
    void markHeaderDirty(int firstCol, int lastCol);
    void schedulePublish();
    int actualBodyRows() const { return qMax(0, rows() - m_fixedRows); }
    static quint64 colorKey(int row, int col)
    {
        return (quint64(quint32(row)) << 32) | quint32(col);
    }

    QVector<RowCells> m_rows;
    int m_cols = 0;
    int m_fixedRows = 1;
    int m_fixedCols = 1;
    QVector<int> m_alignment;
    QHash<quint64, QColor> m_colors;

    int m_shownRows = 0; // what the views were last told
    int m_shownCols = 0;
    int m_dirtyTop = -1; // model rows, inclusive
    int m_dirtyBottom = -1;
    int m_dirtyLeft = -1;
    int m_dirtyRight = -1;
    int m_headerLeft = -1;
    int m_headerRight = -1;
    bool m_suspended = false;
    bool m_publishQueued = false;
};

} // namespace quorvale
