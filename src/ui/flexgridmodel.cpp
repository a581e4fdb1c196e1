#include "ui/flexgridmodel.h"

#include <QApplication>
#include <QPalette>

namespace quorvale {

namespace {

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

FlexGridModel::FlexGridModel(const ReportTable &table, QObject *parent)
    : QAbstractTableModel(parent), m_table(table)
{
    m_shownRows = actualBodyRows();
    m_shownCols = m_table.cols();
    m_shownFixedRows = m_table.fixedRows();
    m_shownFixedCols = m_table.fixedCols();
}

FlexGridModel::~FlexGridModel() = default;

void FlexGridModel::dropColoursFrom(int row, int col)
{
    for (auto it = m_colors.begin(); it != m_colors.end();) {
        if (int(it.key() >> 32) >= row || int(quint32(it.key())) >= col)
            it = m_colors.erase(it);
        else
            ++it;
    }
}

void FlexGridModel::rowsChanged(int oldRows)
{
    if (m_table.rows() < oldRows && !m_colors.isEmpty())
        dropColoursFrom(m_table.rows(), m_table.cols());
    // Rows the views already show may now read differently.
    const int firstChanged = qMin(oldRows, m_table.rows()) - m_table.fixedRows();
    if (firstChanged < m_shownRows)
        markDirty(qMax(0, firstChanged), m_shownRows - 1, 0, m_shownCols - 1);
    schedulePublish();
}

void FlexGridModel::rowsAppended()
{
    if (!isSuspended())
        publish();
}

void FlexGridModel::cellChanged(int row, int col)
{
    if (row < m_table.fixedRows())
        markHeaderDirty(col, col);
    else if (row - m_table.fixedRows() < m_shownRows)
        markDirty(row - m_table.fixedRows(), row - m_table.fixedRows(), col, col);
    schedulePublish();
}

void FlexGridModel::columnsChanged(int oldCols)
{
    const int cols = m_table.cols();
    if (cols < oldCols)
        dropColoursFrom(m_table.rows(), cols);
    const int firstChanged = qMin(oldCols, cols);
    if (firstChanged < m_shownCols) {
        markDirty(0, m_shownRows - 1, firstChanged, m_shownCols - 1);
        markHeaderDirty(firstChanged, m_shownCols - 1);
    }
    schedulePublish();
}

void FlexGridModel::alignmentChanged(int col)
{
    markDirty(0, m_shownRows - 1, col, col);
    schedulePublish();
}

void FlexGridModel::layoutChanged()
{
    beginResetModel();
    m_shownRows = actualBodyRows();
    m_shownCols = m_table.cols();
    m_shownFixedRows = m_table.fixedRows();
    m_shownFixedCols = m_table.fixedCols();
    m_dirtyTop = m_dirtyBottom = m_dirtyLeft = m_dirtyRight = -1;
    m_headerLeft = m_headerRight = -1;
    endResetModel();
}

void FlexGridModel::tableChanged(int fromRow)
{
    if (!m_colors.isEmpty())
        dropColoursFrom(qMax(0, fromRow), m_table.cols());
    if (m_table.fixedRows() != m_shownFixedRows || m_table.fixedCols() != m_shownFixedCols) {
        layoutChanged();
    } else {
        // One notice for every shown cell costs no more than for one row:
        // the views repaint what they show either way.
        markDirty(0, m_shownRows - 1, 0, m_shownCols - 1);
        markHeaderDirty(0, m_shownCols - 1);
    }
    for (int c = 0; c < m_table.cols(); ++c)
        Q_EMIT columnWidthChanged(c);
    if (!isSuspended())
        publish();
}

void FlexGridModel::setDrawing(bool on)
{
    if (on == m_drawing)
        return;
    m_drawing = on;
    Q_EMIT drawingSwitched(on);
    if (on)
        publish();
}

QColor FlexGridModel::backColor(int row, int col) const
{
    m_table.text(row, col); // the same range check as the cell's own
    return m_colors.value(colorKey(row, col));
}

void FlexGridModel::setBackColor(int row, int col, const QColor &color)
{
    m_table.text(row, col);
    if (color.isValid())
        m_colors.insert(colorKey(row, col), color);
    else
        m_colors.remove(colorKey(row, col));
    if (row >= m_table.fixedRows() && row - m_table.fixedRows() < m_shownRows)
        markDirty(row - m_table.fixedRows(), row - m_table.fixedRows(), col, col);
    schedulePublish();
}

bool FlexGridModel::hasPending() const
{
    return m_shownRows != actualBodyRows() || m_shownCols != m_table.cols() || m_dirtyTop >= 0 ||
           m_headerLeft >= 0;
}

void FlexGridModel::publish()
{
    m_publishQueued = false;
    const int bodyRows = actualBodyRows();
    const int cols = m_table.cols();
    if (m_shownRows > bodyRows) {
        beginRemoveRows(QModelIndex(), bodyRows, m_shownRows - 1);
        m_shownRows = bodyRows;
        endRemoveRows();
    }
    if (m_shownCols > cols) {
        beginRemoveColumns(QModelIndex(), cols, m_shownCols - 1);
        m_shownCols = cols;
        endRemoveColumns();
    } else if (m_shownCols < cols) {
        beginInsertColumns(QModelIndex(), m_shownCols, cols - 1);
        m_shownCols = cols;
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
    if (isSuspended() || m_publishQueued || !hasPending())
        return;
    m_publishQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_publishQueued && !isSuspended())
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
    const int row = index.row() + m_table.fixedRows();
    const int col = index.column();
    // Between a change and its publication the views may ask about cells
    // that are already gone.
    if (row >= m_table.rows() || col >= m_table.cols())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return m_table.text(row, col);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(toQtAlignment(m_table.alignment(col), m_table.text(row, col)));
    case Qt::BackgroundRole: {
        const QColor color = m_colors.value(colorKey(row, col));
        if (color.isValid())
            return color;
        if (col < m_table.fixedCols())
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
            return section + m_table.fixedRows();
        return {};
    }
    if (section < 0 || section >= m_table.cols())
        return {};
    if (role == Qt::DisplayRole) {
        QStringList lines;
        for (int r = 0; r < m_table.fixedRows() && r < m_table.rows(); ++r)
            lines.append(m_table.text(r, section).trimmed());
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
