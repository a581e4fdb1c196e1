#include "ui/flexgrid.h"

#include "runtime/runtimeerror.h"
#include "ui/flexgridmodel.h"
#include "ui/flexgridtextwidth.h"
#include "ui/printerfonts.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QHeaderView>

namespace quorvale {

namespace {

constexpr int kDefaultColTwips = 960;
// FormatString widens each column by a little more than the text itself.
constexpr int kFormatMarginTwips = 120;

} // namespace

FlexGrid::FlexGrid(QWidget *parent) : QTableView(parent), m_model(new FlexGridModel(this))
{
    ensureCjkFontSubstitutes();
    setModel(m_model);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setWordWrap(false);
    setTextElideMode(Qt::ElideNone);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setMinimumSectionSize(0);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    m_colTwips.fill(kDefaultColTwips, m_model->cols());
    applyRowHeight();
    applyColumnWidths(0, m_model->columnCount() - 1);

    connect(m_model, &QAbstractItemModel::columnsInserted, this,
            [this](const QModelIndex &, int first, int last) { applyColumnWidths(first, last); });
    connect(m_model, &QAbstractItemModel::modelReset, this,
            [this] { applyColumnWidths(0, m_model->columnCount() - 1); });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int size) {
                if (!m_settingWidths && section < m_colTwips.size())
                    m_colTwips[section] = qRound(pixelsToTwipsX(size));
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
    return m_model->rows();
}

void FlexGrid::setRows(int rows)
{
    m_model->setRows(rows);
    m_row = qMin(m_row, rows - 1);
}

int FlexGrid::Cols() const
{
    return m_model->cols();
}

void FlexGrid::setCols(int cols)
{
    const int old = Cols();
    m_model->setCols(cols);
    m_colTwips.resize(cols, kDefaultColTwips);
    // Columns dropped and re-added before the view heard of it keep their sections.
    applyColumnWidths(qMin(old, cols), qMin(cols, m_model->columnCount()) - 1);
    m_col = qMin(m_col, qMax(0, cols - 1));
}

int FlexGrid::FixedRows() const
{
    return m_model->fixedRows();
}

void FlexGrid::setFixedRows(int rows)
{
    m_model->setFixedRows(rows);
    horizontalHeader()->setVisible(rows > 0);
}

int FlexGrid::FixedCols() const
{
    return m_model->fixedCols();
}

void FlexGrid::setFixedCols(int cols)
{
    m_model->setFixedCols(cols);
}

QString FlexGrid::TextMatrix(int row, int col) const
{
    return m_model->text(row, col);
}

void FlexGrid::setTextMatrix(int row, int col, const QString &text)
{
    m_model->setText(row, col, text);
}

void FlexGrid::appendRows(const QVector<QStringList> &rows)
{
    m_model->appendRows(rows);
}

void FlexGrid::setFormatString(const QString &format)
{
    const QStringList columns = format.split(QLatin1Char('|'));
    setCols(int(columns.size()));
    if (Rows() < 1)
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
        setColAlignment(c, alignment);
        setTextMatrix(0, c, text);
        setColWidth(c, qRound(TextWidth(text)) + kFormatMarginTwips);
    }
    m_formatString = format;
}

QString FlexGrid::FormatString() const
{
    return m_formatString;
}

int FlexGrid::ColWidth(int col) const
{
    checkCol(col);
    return m_colTwips[col];
}

void FlexGrid::setColWidth(int col, int twips)
{
    checkCol(col);
    m_colTwips[col] = twips < 0 ? kDefaultColTwips : twips;
    if (col < m_model->columnCount())
        applyColumnWidths(col, col);
}

int FlexGrid::RowHeight(int row) const
{
    if (row < 0 || row >= Rows())
        throw RuntimeError(30009, QStringLiteral("Invalid Row value"));
    return qRound(pixelsToTwipsX(verticalHeader()->defaultSectionSize()));
}

int FlexGrid::ColAlignment(int col) const
{
    return m_model->alignment(col);
}

void FlexGrid::setColAlignment(int col, int alignment)
{
    m_model->setAlignment(col, alignment);
}

int FlexGrid::Row() const
{
    return m_row;
}

void FlexGrid::setRow(int row)
{
    if (row < 0 || row >= Rows())
        throw RuntimeError(30009, QStringLiteral("Invalid Row value"));
    m_row = row;
}

int FlexGrid::Col() const
{
    return m_col;
}

void FlexGrid::setCol(int col)
{
    if (col < 0 || col >= Cols())
        throw RuntimeError(30010, QStringLiteral("Invalid Col value"));
    m_col = col;
}

QColor FlexGrid::CellBackColor() const
{
    return cellBackColor(m_row, m_col);
}

void FlexGrid::setCellBackColor(const QColor &color)
{
    setCellBackColor(m_row, m_col, color);
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
    return m_redraw;
}

void FlexGrid::setRedraw(bool on)
{
    if (on == m_redraw)
        return;
    m_redraw = on;
    setUpdatesEnabled(on);
    m_model->setSuspended(!on);
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

int FlexGrid::twipsToPixelsX(double twips) const
{
    return qRound(twips * logicalDpiX() / 1440.0);
}

double FlexGrid::pixelsToTwipsX(int pixels) const
{
    return pixels * 1440.0 / logicalDpiX();
}

void FlexGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    if (current.isValid()) {
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
    for (int c = first; c <= last && c < m_colTwips.size(); ++c)
        horizontalHeader()->resizeSection(c, twipsToPixelsX(m_colTwips[c]));
    m_settingWidths = false;
}

void FlexGrid::applyRowHeight()
{
    const QFontMetrics metrics(font(), this);
    verticalHeader()->setDefaultSectionSize(metrics.height() + 2);
}

void FlexGrid::checkCol(int col) const
{
    if (col < 0 || col >= m_colTwips.size())
        throw RuntimeError(381, QStringLiteral("Subscript out of range"));
}

} // namespace quorvale
