#include "ui/flexgridmodel.h"

#include "runtime/runtimeerror.h"
#include "ui/flexgrid.h"

#include <QApplication>
#include <QPalette>
#include <algorithm>

namespace quorvale {

namespace {

// The control's own error for a row or column number outside the grid.
[[noreturn]] void subscriptOutOfRange()
{
    throw RuntimeError(381, QStringLiteral("Subscript out of range"));
}

bool looksNumeric(const QString &text)
{
    bool ok = false;
    text.trimmed().toDouble(&ok);
    return ok;
}

Qt::Alignment toQtAlignment(int flex, const QString &text)
{
    switch (flex) {
    case FlexAlign::LeftTop:
        return Qt::AlignLeft | Qt::AlignTop;
    case FlexAlign::LeftCenter:
        return Qt::AlignLeft | Qt::AlignVCenter;
    case FlexAlign::LeftBottom:
        return Qt::AlignLeft | Qt::AlignBottom;
    case FlexAlign::CenterTop:
        return Qt::AlignHCenter | Qt::AlignTop;
    case FlexAlign::CenterCenter:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    case FlexAlign::CenterBottom:
        return Qt::AlignHCenter | Qt::AlignBottom;
    case FlexAlign::RightTop:
        return Qt::AlignRight | Qt::AlignTop;
    case FlexAlign::RightCenter:
        return Qt::AlignRight | Qt::AlignVCenter;
    case FlexAlign::RightBottom:
        return Qt::AlignRight | Qt::AlignBottom;
    default:
        return (looksNumeric(text) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    }
}

} // namespace

FlexGridModel::FlexGridModel(QObject *parent) : QAbstractTableModel(parent)
{
    // The control starts with two rows and two columns, one of each fixed.
    m_rows.resize(2);
    m_cols = 2;
    m_alignment.fill(FlexAlign::General, 2);
    m_shownRows = actualBodyRows();
    m_shownCols = m_cols;
}

void FlexGridModel::setRows(int rows)
{
    if (rows < m_fixedRows)
        throw RuntimeError(30009, QStringLiteral("Invalid Row value"));
    const int old = this->rows();
    if (rows == old)
        return;
    if (rows < old) {
        m_rows.resize(rows);
        if (!m_colors.isEmpty()) {
            for (auto it = m_colors.begin(); it != m_colors.end();) {
                if (int(it.key() >> 32) >= rows)
                    it = m_colors.erase(it);
                else
                    ++it;
            }
        }
    } else {
        m_rows.resize(rows);
    }
    // Rows the views already show may now read differently.
    const int firstChanged = qMin(old, rows) - m_fixedRows;
    if (firstChanged < m_shownRows)
        markDirty(qMax(0, firstChanged), m_shownRows - 1, 0, m_shownCols - 1);
    schedulePublish();
}

void FlexGridModel::setCols(int cols)
{
    if (cols < m_fixedCols)
        throw RuntimeError(30010, QStringLiteral("Invalid Col value"));
    if (cols == m_cols)
        return;
    if (cols < m_cols) {
        for (RowCells &cells : m_rows) {
            auto cut = std::lower_bound(cells.begin(), cells.end(), cols,
                                        [](const Cell &c, int col) { return c.col < col; });
            cells.erase(cut, cells.end());
        }
        for (auto it = m_colors.begin(); it != m_colors.end();) {
            if (int(quint32(it.key())) >= cols)
                it = m_colors.erase(it);
            else
                ++it;
        }
    }
    const int firstChanged = qMin(m_cols, cols);
    m_cols = cols;
    m_alignment.resize(cols, FlexAlign::General);
    if (firstChanged < m_shownCols) {
        markDirty(0, m_shownRows - 1, firstChanged, m_shownCols - 1);
        markHeaderDirty(firstChanged, m_shownCols - 1);
    }
    schedulePublish();
}

void FlexGridModel::setFixedRows(int rows)
{
    if (rows < 0 || rows > 2)
        throw RuntimeError(30009, QStringLiteral("Invalid Row value"));
    if (rows == m_fixedRows)
        return;
    beginResetModel();
    if (this->rows() < rows)
        m_rows.resize(rows);
    m_fixedRows = rows;
    m_shownRows = actualBodyRows();
    m_shownCols = m_cols;
    m_dirtyTop = m_dirtyBottom = m_dirtyLeft = m_dirtyRight = -1;
    m_headerLeft = m_headerRight = -1;
    endResetModel();
}

void FlexGridModel::setFixedCols(int cols)
{
    if (cols < 0 || cols >= m_cols + 1)
        throw RuntimeError(30010, QStringLiteral("Invalid Col value"));
    if (cols == m_fixedCols)
        return;
    m_fixedCols = cols;
    markDirty(0, m_shownRows - 1, 0, m_shownCols - 1);
    schedulePublish();
}

QString FlexGridModel::text(int row, int col) const
{
    if (row < 0 || row >= rows() || col < 0 || col >= m_cols)
        subscriptOutOfRange();
    const RowCells &cells = m_rows[row];
    auto it = std::lower_bound(cells.begin(), cells.end(), col,
                               [](const Cell &c, int col) { return c.col < col; });
    return (it != cells.end() && it->col == col) ? it->text : QString();
}

void FlexGridModel::setText(int row, int col, const QString &text)
{
    if (row < 0 || row >= rows() || col < 0 || col >= m_cols)
        subscriptOutOfRange();
    RowCells &cells = m_rows[row];
    // Rows are mostly filled left to right, so the end is the usual place.
    auto it = (cells.isEmpty() || cells.last().col < col)
                  ? cells.end()
                  : std::lower_bound(cells.begin(), cells.end(), col,
                                     [](const Cell &c, int col) { return c.col < col; });
    if (it != cells.end() && it->col == col) {
        if (it->text == text)
            return;
        if (text.isEmpty())
            cells.erase(it);
        else
            it->text = text;
    } else {
        if (text.isEmpty())
            return;
        cells.insert(it, Cell{col, text});
    }
    if (row < m_fixedRows)
        markHeaderDirty(col, col);
    else if (row - m_fixedRows < m_shownRows)
        markDirty(row - m_fixedRows, row - m_fixedRows, col, col);
    schedulePublish();
}

void FlexGridModel::appendRows(const QVector<QStringList> &rows)
{
    if (rows.isEmpty())
        return;
    for (const QStringList &texts : rows) {
        RowCells cells;
        const int n = qMin(int(texts.size()), m_cols);
        for (int c = 0; c < n; ++c) {
            if (!texts[c].isEmpty())
                cells.append(Cell{c, texts[c]});
        }
        cells.squeeze();
        m_rows.append(std::move(cells));
    }
    publish();
}

int FlexGridModel::alignment(int col) const
{
    if (col < 0 || col >= m_cols)
        subscriptOutOfRange();
    return m_alignment[col];
}

void FlexGridModel::setAlignment(int col, int alignment)
{
    if (col < 0 || col >= m_cols)
        subscriptOutOfRange();
    if (alignment < FlexAlign::LeftTop || alignment > FlexAlign::General)
        throw RuntimeError(380, QStringLiteral("Invalid property value"));
    if (m_alignment[col] == alignment)
        return;
    m_alignment[col] = alignment;
    markDirty(0, m_shownRows - 1, col, col);
    schedulePublish();
}

QColor FlexGridModel::backColor(int row, int col) const
{
    if (row < 0 || row >= rows() || col < 0 || col >= m_cols)
        subscriptOutOfRange();
    return m_colors.value(colorKey(row, col));
}

void FlexGridModel::setBackColor(int row, int col, const QColor &color)
{
    if (row < 0 || row >= rows() || col < 0 || col >= m_cols)
        subscriptOutOfRange();
    if (color.isValid())
        m_colors.insert(colorKey(row, col), color);
    else
        m_colors.remove(colorKey(row, col));
    if (row >= m_fixedRows && row - m_fixedRows < m_shownRows)
        markDirty(row - m_fixedRows, row - m_fixedRows, col, col);
    schedulePublish();
}

void FlexGridModel::setSuspended(bool suspended)
{
    if (m_suspended == suspended)
        return;
    m_suspended = suspended;
    if (!suspended)
        publish();
}

bool FlexGridModel::hasPending() const
{
    return m_shownRows != actualBodyRows() || m_shownCols != m_cols || m_dirtyTop >= 0 ||
           m_headerLeft >= 0;
}

void FlexGridModel::publish()
{
    m_publishQueued = false;
    const int bodyRows = actualBodyRows();
    if (m_shownRows > bodyRows) {
        beginRemoveRows(QModelIndex(), bodyRows, m_shownRows - 1);
        m_shownRows = bodyRows;
        endRemoveRows();
    }
    if (m_shownCols > m_cols) {
        beginRemoveColumns(QModelIndex(), m_cols, m_shownCols - 1);
        m_shownCols = m_cols;
        endRemoveColumns();
    } else if (m_shownCols < m_cols) {
        beginInsertColumns(QModelIndex(), m_shownCols, m_cols - 1);
        m_shownCols = m_cols;
        endInsertColumns();
    }
    if (m_shownRows < bodyRows) {
        beginInsertRows(QModelIndex(), m_shownRows, bodyRows - 1);
        m_shownRows = bodyRows;
        endInsertRows();
    }
    if (m_dirtyTop >= 0) {
        const int bottom = qMin(m_dirtyBottom, m_shownRows - 1);
        const int right = qMin(m_dirtyRight, m_shownCols - 1);
        if (m_dirtyTop <= bottom && m_dirtyLeft <= right)
            Q_EMIT dataChanged(index(m_dirtyTop, m_dirtyLeft), index(bottom, right));
        m_dirtyTop = m_dirtyBottom = m_dirtyLeft = m_dirtyRight = -1;
    }
    if (m_headerLeft >= 0) {
        const int right = qMin(m_headerRight, m_shownCols - 1);
        if (m_headerLeft <= right)
            Q_EMIT headerDataChanged(Qt::Horizontal, m_headerLeft, right);
        m_headerLeft = m_headerRight = -1;
    }
}

void FlexGridModel::markDirty(int firstRow, int lastRow, int firstCol, int lastCol)
{
    if (firstRow > lastRow || firstCol > lastCol)
        return;
    if (m_dirtyTop < 0) {
        m_dirtyTop = firstRow;
        m_dirtyBottom = lastRow;
        m_dirtyLeft = firstCol;
        m_dirtyRight = lastCol;
        return;
    }
    m_dirtyTop = qMin(m_dirtyTop, firstRow);
    m_dirtyBottom = qMax(m_dirtyBottom, lastRow);
    m_dirtyLeft = qMin(m_dirtyLeft, firstCol);
    m_dirtyRight = qMax(m_dirtyRight, lastCol);
}

void FlexGridModel::markHeaderDirty(int firstCol, int lastCol)
{
    m_headerLeft = m_headerLeft < 0 ? firstCol : qMin(m_headerLeft, firstCol);
    m_headerRight = qMax(m_headerRight, lastCol);
}

void FlexGridModel::schedulePublish()
{
    if (m_suspended || m_publishQueued || !hasPending())
        return;
    m_publishQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_publishQueued && !m_suspended)
                publish();
        },
        Qt::QueuedConnection);
}

int FlexGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_shownRows;
}

int FlexGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_shownCols;
}

QVariant FlexGridModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const int row = index.row() + m_fixedRows;
    const int col = index.column();
    // Between a change and its publication the views may ask about cells
    // that are already gone.
    if (row >= rows() || col >= m_cols)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(row, col);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(toQtAlignment(m_alignment[col], text(row, col)));
    case Qt::BackgroundRole: {
        const QColor color = m_colors.value(colorKey(row, col));
        if (color.isValid())
            return color;
        if (col < m_fixedCols)
            return QApplication::palette().color(QPalette::Button);
        return {};
    }
    default:
        return {};
    }
}

QVariant FlexGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical) {
        if (role == Qt::DisplayRole)
            return section + m_fixedRows;
        return {};
    }
    if (section < 0 || section >= m_cols)
        return {};
    if (role == Qt::DisplayRole) {
        QStringList lines;
        for (int r = 0; r < m_fixedRows && r < rows(); ++r)
            lines.append(text(r, section).trimmed());
        return lines.join(QLatin1Char('\n'));
    }
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignCenter));
    return {};
}

Qt::ItemFlags FlexGridModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

} // namespace quorvale
