#include "ui/flexgrid.h"

#include "runtime/textwidth.h"
#include "runtime/printer.h"
#include "runtime/printerfonts.h"
#include "runtime/runtimeerror.h"
#include "runtime/twips.h"
#include "ui/flexgridmodel.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QHeaderView>

namespace quorvale {

FlexGrid::FlexGrid(QWidget *parent) : FlexGrid(m_ownTable, parent) {}

FlexGrid::FlexGrid(ReportTable &table, QWidget *parent)
    : QTableView(parent), m_table(table), m_model(new FlexGridModel(m_table, this))
{
    ensureCjkFontSubstitutes();
    setModel(m_model);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setWordWrap(false);
    setTextElideMode(Qt::ElideNone);
    // Tab leaves the grid for the window's next control, as the classic grid's did.
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setMinimumSectionSize(0);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    applyRowHeight();
    applyColumnWidths(0, m_model->columnCount() - 1);

    connect(m_model, &QAbstractItemModel::columnsInserted, this,
            [this](const QModelIndex &, int first, int last) { applyColumnWidths(first, last); });
    connect(m_model, &QAbstractItemModel::modelReset, this,
            [this] { applyColumnWidths(0, m_model->columnCount() - 1); });
    connect(m_model, &FlexGridModel::columnWidthChanged, this,
            [this](int col) { applyColumnWidths(col, col); });
    connect(m_model, &FlexGridModel::drawingSwitched, this, [this](bool on) {
        setUpdatesEnabled(on);
    });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) {
                // The width follows the user's drag; the header already shows it.
                if (!m_settingWidths && section < m_table.cols())
                    m_table.setColWidth(section, qRound(pixelsToTwipsX(size)));
            });
    connect(this, &QAbstractItemView::pressed, this, [this](const QModelIndex &index) {
        m_row = m_model->gridRow(index);
        m_col = index.column();
    });
    connect(this, &QAbstractItemView::clicked, this, [this] { Q_EMIT Click(); });
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex &index) {
        m_row = m_model->gridRow(index);
        m_col = index.column();
        Q_EMIT DblClick();
    });
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
        m_col = section;
        Q_EMIT Click();
    });
    connect(horizontalHeader(), &QHeaderView::sectionDoubleClicked, this, [this](int section) {
        m_col = section;
        Q_EMIT DblClick();
    });
}

FlexGrid::~FlexGrid() = default;

int FlexGrid::Rows() const
{
    return m_table.rows();
}

void FlexGrid::setRows(int rows)
{
    const int old = m_table.rows();
    m_table.setRows(rows);
    m_row = qMin(m_row, rows - 1);
    m_model->rowsChanged(old);
}

int FlexGrid::Cols() const
{
    return m_table.cols();
}

void FlexGrid::setCols(int cols)
{
    const int old = Cols();
    m_table.setCols(cols);
    m_model->columnsChanged(old);
    // Columns dropped and re-added before the view heard of it keep their sections.
    applyColumnWidths(qMin(old, cols), qMin(cols, m_model->columnCount()) - 1);
    m_col = qMin(m_col, qMax(0, cols - 1));
}

int FlexGrid::FixedRows() const
{
    return m_table.fixedRows();
}

void FlexGrid::setFixedRows(int rows)
{
    const int old = m_table.fixedRows();
    m_table.setFixedRows(rows);
    if (rows != old)
        m_model->layoutChanged();
    horizontalHeader()->setVisible(rows > 0);
}

int FlexGrid::FixedCols() const
{
    return m_table.fixedCols();
}

void FlexGrid::setFixedCols(int cols)
{
    const int old = m_table.fixedCols();
    m_table.setFixedCols(cols);
    if (cols != old)
        m_model->layoutChanged();
}

QString FlexGrid::TextMatrix(int row, int col) const
{
    return m_table.text(row, col);
}

void FlexGrid::setTextMatrix(int row, int col, const QString &text)
{
    m_table.setText(row, col, text);
    m_model->cellChanged(row, col);
}

void FlexGrid::appendRows(const QVector<QStringList> &rows)
{
    if (rows.isEmpty())
        return;
    m_table.appendRows(rows);
    m_model->rowsAppended();
}

void FlexGrid::setFormatString(const QString &format)
{
    m_table.setFormatString(format, textWidthFn());
    tableChanged(m_table.rows());
}

void FlexGrid::tableChanged(int fromRow)
{
    m_model->tableChanged(fromRow);
    horizontalHeader()->setVisible(m_table.fixedRows() > 0);
    clampCurrentCell();
}

void FlexGrid::editTable(const std::function<void(ReportTable &table)> &edit)
{
    // Shown again even when the edit fails half-way: what it did is in the table.
    struct Shown {
        FlexGrid *grid;
        ~Shown() { grid->tableChanged(grid->Rows()); }
    } shown{this};
    edit(m_table);
}

void FlexGrid::clampCurrentCell()
{
    m_row = qMax(0, qMin(m_row, m_table.rows() - 1));
    m_col = qMax(0, qMin(m_col, m_table.cols() - 1));
}

QString FlexGrid::FormatString() const
{
    return m_table.formatString();
}

int FlexGrid::ColWidth(int col) const
{
    return m_table.colWidth(col);
}

void FlexGrid::setColWidth(int col, int twips)
{
    const int old = m_table.colWidth(col);
    m_table.setColWidth(col, twips);
    if (m_table.colWidth(col) != old)
        m_model->widthChanged(col);
}

int FlexGrid::RowHeight(int row) const
{
    if (row < 0 || row >= Rows())
        throw RuntimeError(ErrorNumber::InvalidRowValue, QStringLiteral("Invalid Row value"));
    return qRound(pixelsToTwipsX(verticalHeader()->defaultSectionSize()));
}

int FlexGrid::ColAlignment(int col) const
{
    return m_table.alignment(col);
}

void FlexGrid::setColAlignment(int col, int alignment)
{
    const int old = m_table.alignment(col);
    m_table.setAlignment(col, alignment);
    if (alignment != old)
        m_model->alignmentChanged(col);
}

int FlexGrid::Row() const
{
    return m_row;
}

void FlexGrid::setRow(int row)
{
    if (row < 0 || row >= Rows())
        throw RuntimeError(ErrorNumber::InvalidRowValue, QStringLiteral("Invalid Row value"));
    m_row = row;
}

int FlexGrid::Col() const
{
    return m_col;
}

void FlexGrid::setCol(int col)
{
    if (col < 0 || col >= Cols())
        throw RuntimeError(ErrorNumber::InvalidColValue, QStringLiteral("Invalid Col value"));
    m_col = col;
}

QColor FlexGrid::CellBackColor() const
{
    return cellBackColor(Row(), m_col);
}

void FlexGrid::setCellBackColor(const QColor &color)
{
    setCellBackColor(Row(), m_col, color);
}

QColor FlexGrid::cellBackColor(int row, int col) const
{
    const QColor color = m_model->backColor(row, col);
    return color.isValid() ? color : palette().color(QPalette::Base);
}

void FlexGrid::setCellBackColor(int row, int col, const QColor &color)
{
    m_model->setBackColor(row, col, color);
}

bool FlexGrid::Redraw() const
{
    return !m_model->isSuspended();
}

void FlexGrid::setRedraw(bool on)
{
    m_model->setDrawing(on);
}

double FlexGrid::TextWidth(const QString &text) const
{
    if (text.isEmpty())
        return 0.0;
    const int dpi = logicalDpiX();
    if (!m_gridFontWidths || !m_gridFontWidths->matches(font(), dpi))
        m_gridFontWidths = std::make_unique<TextWidthCache>(font(), dpi);
    return m_gridFontWidths->width(text);
}

double FlexGrid::TextWidth(const QString &text, const QFont &font) const
{
    if (text.isEmpty())
        return 0.0;
    const int dpi = logicalDpiX();
    if (!m_otherFontWidths || !m_otherFontWidths->matches(font, dpi))
        m_otherFontWidths = std::make_unique<TextWidthCache>(font, dpi);
    return m_otherFontWidths->width(text);
}

TextWidthFn FlexGrid::textWidthFn() const
{
    return [this](const QString &text) { return TextWidth(text); };
}

PrintLook FlexGrid::printLook() const
{
    return {font(), RowHeight(0)};
}

int FlexGrid::twipsToPixelsX(double twips) const
{
    return qRound(twipsToDots(twips, logicalDpiX()));
}

double FlexGrid::pixelsToTwipsX(int pixels) const
{
    return dotsToTwips(pixels, logicalDpiX());
}

void FlexGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    // The view may still show rows the table has dropped (it hears of
    // changes in batches); such a row cannot be current.
    if (current.isValid() && m_model->gridRow(current) < m_table.rows()) {
        m_row = m_model->gridRow(current);
        m_col = current.column();
    }
}

void FlexGrid::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        applyRowHeight();
}

void FlexGrid::applyColumnWidths(int first, int last)
{
    m_settingWidths = true;
    for (int c = first; c <= last && c < m_table.cols(); ++c)
        horizontalHeader()->resizeSection(c, twipsToPixelsX(m_table.colWidth(c)));
    m_settingWidths = false;
}

void FlexGrid::applyRowHeight()
{
    const QFontMetrics metrics(font(), this);
    verticalHeader()->setDefaultSectionSize(metrics.height() + 2);
}

} // namespace quorvale
