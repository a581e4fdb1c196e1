#include "xlsx/xlsxworksheet.h"

#include "xlsx/xlsxcellinput.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxsheetlayout.h"
#include "xlsx/xlsxsheetprotection.h"
#include "xlsx/xlsxsheetstream.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>
#include <vector>

namespace quorvale::xlsx {

namespace {

constexpr int MaxRows = 1048576;
constexpr int MaxCols = 16384;
// Excel opens a file with a longer cell text only after "repairing" it.
constexpr qsizetype MaxCellText = 32767;

void checkCell(int row, int col)
{
    if (row < 1 || row > MaxRows || col < 1 || col > MaxCols)
        throw Error(ErrorNumber::WorkbookError,
                           QStringLiteral("单元格位置超出工作表范围（第 %1 行，第 %2 列）")
                               .arg(row)
                               .arg(col));
}

CellRange checkedRange(int row1, int col1, int row2, int col2)
{
    checkCell(row1, col1);
    checkCell(row2, col2);
    return {std::min(row1, row2), std::min(col1, col2), std::max(row1, row2),
            std::max(col1, col2)};
}

int horizontalIndex(int value)
{
    switch (value) {
    case 1: return 0;
    case 2: case -4131: return 1;
    case 3: case -4108: return 2;
    case 4: case -4152: return 3;
    case 5: return 4;
    case 6: case -4130: return 5;
    case 7: return 6;
    case 8: case -4117: return 7;
    }
    throw Error(ErrorNumber::WorkbookError,
                       QStringLiteral("不能设置水平对齐方式：无效的值 %1").arg(value));
}

int verticalIndex(int value)
{
    switch (value) {
    case 1: case -4160: return 0;
    case 2: case -4108: return 1;
    case 3: case -4107: return 2;
    case 4: case -4130: return 3;
    case 5: case -4117: return 4;
    }
    throw Error(ErrorNumber::WorkbookError,
                       QStringLiteral("不能设置垂直对齐方式：无效的值 %1").arg(value));
}

void checkFontSize(double size)
{
    if (!(size >= 1 && size <= 409))
        throw Error(ErrorNumber::WorkbookError, QStringLiteral("不能设置字号：无效的值 %1").arg(size));
}

} // namespace

Worksheet::Worksheet(Workbook &book, QString name, QString partName, bool isNew)
    : m_book(book), m_name(std::move(name)), m_partName(std::move(partName)), m_isNew(isNew),
      m_layout(std::make_unique<SheetLayout>())
{
}

Worksheet::~Worksheet() = default;

bool Worksheet::isModified() const
{
    return !m_finished && (m_isNew || !m_layout->isEmpty() || m_stream || !m_cells.empty());
}

void Worksheet::beforeCells()
{
    if (m_stream || m_finished)
        throw Error(ErrorNumber::WorkbookError,
                    QStringLiteral("工作表“%1”已开始写入单元格：列宽、格式和合并须在单元格之前设置")
                        .arg(m_name));
}

void Worksheet::writePendingRow()
{
    if (m_cells.empty())
        return;
    if (!m_stream)
        m_stream = m_book.openStream(*this, *m_layout);
    m_stream->row(m_row, m_cells);
    m_cells.clear();
}

bool Worksheet::finish()
{
    if (m_finished)
        return false;
    writePendingRow();
    if (!m_stream)
        m_stream = m_book.openStream(*this, *m_layout);
    const bool overwrote = m_stream->finish();
    m_stream.reset();
    m_layout = std::make_unique<SheetLayout>();
    m_finished = true;
    return overwrote;
}

void Worksheet::checkName(const QString &name)
{
    static const QString forbidden = QStringLiteral("[]:*?/\\");
    bool valid = !name.isEmpty() && name.size() <= 31 && !name.startsWith(u'\'') &&
                 !name.endsWith(u'\'') &&
                 name.compare(QStringLiteral("History"), Qt::CaseInsensitive) != 0;
    for (QChar c : name)
        valid = valid && !forbidden.contains(c) && c.unicode() >= 0x20;
    if (!valid)
        throw Error(ErrorNumber::WorkbookError,
                           QStringLiteral("工作表名称“%1”无效：名称须为 1 到 31 个字符，不能包含 "
                                          "[ ] : * ? / \\，不能以单引号开头或结尾")
                               .arg(name));
}

void Worksheet::nameTaken(const QString &name)
{
    throw Error(ErrorNumber::WorkbookError,
                QStringLiteral("工作表名称“%1”已被使用（名称不区分大小写）").arg(name));
}

void Worksheet::setName(const QString &name)
{
    checkName(name);
    if (name == m_name)
        return;
    if (m_book.isNameTaken(name, this))
        nameTaken(name);
    m_name = name;
    m_book.sheetRenamed(*this);
}

void Worksheet::setVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    m_book.sheetVisibilityChanged(*this);
}

void Worksheet::setCellValue(int row, int col, const QString &text)
{
    checkCell(row, col);
    if (m_finished || row < m_row)
        throw Error(ErrorNumber::WorkbookError,
                    QStringLiteral("工作表“%1”的单元格须从上到下逐行写入（第 %2 行已写完）")
                        .arg(m_name)
                        .arg(m_finished ? m_row : row));
    if (row > m_row) {
        writePendingRow();
        m_row = row;
    }
    const auto at = std::lower_bound(m_cells.begin(), m_cells.end(), col,
                                     [](const RowCell &c, int v) { return c.col < v; });
    const bool present = at != m_cells.end() && at->col == col;
    // A new sheet has nothing to clear: empty cells of a wide grid cost nothing.
    if (text.isEmpty() && m_isNew) {
        if (present)
            m_cells.erase(at);
        return;
    }
    CellInput input = CellInput::interpret(text, m_book.usesDate1904()
                                                     ? CellInput::DateSystem::From1904
                                                     : CellInput::DateSystem::From1900);
    if (input.text.size() > MaxCellText) {
        const qsizetype kept = input.text.at(MaxCellText - 1).isHighSurrogate() ? MaxCellText - 1
                                                                                 : MaxCellText;
        m_book.warn(QStringLiteral("工作表“%1”的单元格 %2 中的文字有 %3 个字符，超过 Excel "
                                   "单元格最多 %4 个字符的限制，只写入了前 %5 个字符")
                        .arg(m_name, QString::fromLatin1(XmlText::cellRef(row, col)))
                        .arg(input.text.size())
                        .arg(MaxCellText)
                        .arg(kept));
        input.text.truncate(kept);
    }
    RowCell cell{quint16(col), input.kind, input.number, std::move(input.text)};
    if (present)
        *at = std::move(cell);
    else
        m_cells.insert(at, std::move(cell));
}

void Worksheet::addCharts(const std::vector<Chart> &charts)
{
    beforeCells();
    if (!m_layout->drawingRelId.isEmpty())
        throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作表“%1”已有图表").arg(m_name));
    if (!charts.empty())
        m_layout->drawingRelId = m_book.addCharts(*this, charts);
}

void Worksheet::setLandscapeOnePageWide()
{
    beforeCells();
    if (!m_isNew)
        throw Error(ErrorNumber::WorkbookError,
                    QStringLiteral("只能为新建的工作表设置打印页面：“%1”").arg(m_name));
    m_layout->landscapeOnePageWide = true;
}

void Worksheet::setColumnWidth(int col, double width)
{
    checkCell(1, col);
    if (!(width >= 0 && width <= 255))
        throw Error(ErrorNumber::WorkbookError,
                           QStringLiteral("不能设置列宽：无效的值 %1").arg(width));
    beforeCells();
    m_layout->widths[col] = width;
}

void Worksheet::setRowHorizontalAlignment(int row, int value)
{
    checkCell(row, 1);
    beforeCells();
    m_layout->formats.push_back(
        {row, 1, row, MaxCols, true, FormatProperty::Horizontal, double(horizontalIndex(value))});
}

void Worksheet::setRowVerticalAlignment(int row, int value)
{
    checkCell(row, 1);
    beforeCells();
    m_layout->formats.push_back(
        {row, 1, row, MaxCols, true, FormatProperty::Vertical, double(verticalIndex(value))});
}

void Worksheet::setRowFontSize(int row, double size)
{
    checkCell(row, 1);
    checkFontSize(size);
    beforeCells();
    m_layout->formats.push_back({row, 1, row, MaxCols, true, FormatProperty::FontSize, size});
}

void Worksheet::setRangeFontSize(int row1, int col1, int row2, int col2, double size)
{
    const CellRange r = checkedRange(row1, col1, row2, col2);
    checkFontSize(size);
    beforeCells();
    m_layout->formats.push_back(
        {r.row1, r.col1, r.row2, r.col2, false, FormatProperty::FontSize, size});
}

void Worksheet::setRangeBorders(int row1, int col1, int row2, int col2, int lineStyle)
{
    const CellRange r = checkedRange(row1, col1, row2, col2);
    if (lineStyle != 1 && lineStyle != -4142)
        throw Error(ErrorNumber::WorkbookError,
                           QStringLiteral("不能设置边框线型：不支持的值 %1").arg(lineStyle));
    beforeCells();
    m_layout->formats.push_back({r.row1, r.col1, r.row2, r.col2, false, FormatProperty::Border,
                                 lineStyle == 1 ? 1.0 : 0.0});
}

void Worksheet::merge(int row1, int col1, int row2, int col2)
{
    const CellRange r = checkedRange(row1, col1, row2, col2);
    if (r.row1 == r.row2 && r.col1 == r.col2)
        return;
    if (qint64(r.row2 - r.row1 + 1) * (r.col2 - r.col1 + 1) > 1000000)
        throw Error(ErrorNumber::WorkbookError, QStringLiteral("合并的单元格区域过大"));
    beforeCells();
    // A later merge over an earlier one replaces it, as in Excel.
    std::erase_if(m_layout->merges, [&r](const CellRange &m) { return m.intersects(r); });
    m_layout->merges.push_back(r);
}

void Worksheet::clearRange(int row1, int col1, int row2, int col2)
{
    const CellRange r = checkedRange(row1, col1, row2, col2);
    beforeCells();
    m_layout->clears.push_back(r);
}

void Worksheet::checkUnlocked(int row1, int col1, int row2, int col2) const
{
    const CellRange range = checkedRange(row1, col1, row2, col2);
    if (m_isNew || !original().protectedSheet)
        return;
    const QByteArray xml = m_book.originalPart(*this);
    if (const auto cell = SheetProtection::firstLockedCell(xml, m_book.styles(), range))
        throw Error(ErrorNumber::WorkbookError,
                    QStringLiteral("工作表“%1”在 Excel 中受保护（审阅 → 保护工作表），要写入的单元格 "
                                   "%2 已锁定：请在 Excel 中打开“%3”，点 审阅 → 撤销工作表保护，"
                                   "再输出")
                        .arg(m_name, QString::fromLatin1(*cell),
                             Package::displayName(m_book.path())));
}

Worksheet::Extent Worksheet::originalExtent() const
{
    return original().extent;
}

const Worksheet::Original &Worksheet::original() const
{
    if (m_original)
        return *m_original;
    Original found;
    Extent &extent = found.extent;
    if (m_isNew)
        return m_original.emplace(found);
    const QByteArray xml = m_book.originalPart(*this);
    found.protectedSheet = SheetProtection::isProtected(xml);
    const QByteArrayView text(xml);
    std::vector<bool> headerCells;
    qsizetype pos = 0;
    XmlTag tag;
    int row = 0, col = 0;
    bool inCell = false;
    while (XmlText::nextTag(text, pos, tag)) {
        const QByteArrayView local = tag.localName();
        if (local == "row" && !tag.closing) {
            const auto r = XmlText::rawAttribute(text.sliced(tag.begin, tag.end - tag.begin), "r");
            row = r ? r->toInt() : row + 1;
            col = 0;
        } else if (local == "c") {
            inCell = !tag.closing && !tag.selfClosing;
            if (tag.closing)
                continue;
            int r = 0, c = 0;
            const auto ref = XmlText::rawAttribute(text.sliced(tag.begin, tag.end - tag.begin), "r");
            col = ref && XmlText::parseCellRef(*ref, r, c) ? c : col + 1;
        } else if (inCell && !tag.closing && (local == "v" || local == "is")) {
            extent.lastRow = std::max(extent.lastRow, row);
            if (row == 1 && col >= 1 && col <= MaxCols) {
                if (headerCells.size() <= size_t(col))
                    headerCells.resize(size_t(col) + 1);
                headerCells[size_t(col)] = true;
            }
        }
    }
    while (size_t(extent.headerColumns + 1) < headerCells.size() &&
           headerCells[size_t(extent.headerColumns + 1)])
        ++extent.headerColumns;
    return m_original.emplace(found);
}

} // namespace quorvale::xlsx
