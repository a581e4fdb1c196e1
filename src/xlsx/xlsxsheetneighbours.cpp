#include "xlsx/xlsxsheetneighbours.h"

#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxpartcheck.h"
#include "xlsx/xlsxxmltext.h"

#include <QSet>
#include <algorithm>

namespace quorvale::xlsx {

namespace {

// The start tag of the first element with the local name, as text.
QByteArrayView firstTag(QByteArrayView xml, QByteArrayView localName)
{
    qsizetype pos = 0;
    XmlTag tag;
    while (XmlText::nextTag(xml, pos, tag))
        if (!tag.closing && tag.localName() == localName)
            return xml.sliced(tag.begin, tag.end - tag.begin);
    return {};
}

RowCells::iterator cellAt(RowCells &cells, int col)
{
    return std::lower_bound(cells.begin(), cells.end(), col,
                            [](const RowCell &c, int v) { return c.col < v; });
}

// What a header cell shows once the row is written: nullopt when the
// export leaves it as it was.
std::optional<QString> newHeaderText(RowCells &cells, const SheetLayout &layout, int row, int col,
                                     bool date1904)
{
    const auto it = cellAt(cells, col);
    if (it != cells.end() && it->col == col) {
        switch (it->kind) {
        case CellInput::Kind::Text:
        case CellInput::Kind::QuotedText: return it->text;
        case CellInput::Kind::Empty: return QString();
        default:
            return CellInput::displayText(it->kind, it->number,
                                          date1904 ? CellInput::DateSystem::From1904
                                                   : CellInput::DateSystem::From1900);
        }
    }
    if (layout.isCleared(row, col))
        return QString();
    return std::nullopt;
}

} // namespace

SheetNeighbours::SheetNeighbours(Package &package, const QString &bookPath,
                                 const QString &sheetPart, const QString &sheetName,
                                 bool date1904)
    : m_package(package), m_bookPath(bookPath), m_sheetName(sheetName), m_date1904(date1904)
{
    const QString relsPart = relationshipsPartOf(sheetPart);
    if (!m_package.contains(relsPart))
        return;
    const QByteArray xml = m_package.read(relsPart);
    checkPart(bookPath, relsPart, xml, "Relationships");
    bool ok = false;
    m_relationships = readRelationships(xml, sheetPart, ok);
}

void SheetNeighbours::damaged(const QString &part, const QString &why) const
{
    damagedPart(m_bookPath, part, why);
}

QByteArray SheetNeighbours::readPart(const QString &part) const
{
    if (!m_package.contains(part))
        damaged(part, QStringLiteral("工作表引用了它，但它不存在"));
    return m_package.read(part);
}

void SheetNeighbours::refuseOverlappingPivotTables(const CellRange &block) const
{
    if (block.row1 == 0)
        return;
    for (const Relationship &rel : m_relationships) {
        if (rel.external || !rel.isOfType(QLatin1StringView("pivotTable")))
            continue;
        const QByteArray xml = readPart(rel.target);
        const QByteArrayView root = firstTag(xml, "pivotTableDefinition");
        const auto location = CellRange::parse(
            XmlText::attribute(firstTag(xml, "location"), "ref").value_or(QByteArray()));
        if (root.isEmpty() || !location)
            damaged(rel.target, QStringLiteral("数据透视表没有位置"));
        if (!location->intersects(block))
            continue;
        throw Error(ErrorNumber::WorkbookError,
                    QStringLiteral("工作表“%1”中的数据透视表“%2”（%3）与要写入的区域（%4）重叠，"
                                   "Excel 不能改写数据透视表中的单元格；文件未作修改。请换一个"
                                   "工作表名称，或先在 Excel 中移走这个数据透视表")
                        .arg(m_sheetName,
                             QString::fromUtf8(XmlText::attribute(root, "name").value_or("")),
                             QString::fromLatin1(location->ref()),
                             QString::fromLatin1(block.ref())));
    }
}

const std::vector<int> &SheetNeighbours::prepareTables(SheetLayout &layout)
{
    for (const Relationship &rel : m_relationships) {
        if (rel.external || !rel.isOfType(QLatin1StringView("table")))
            continue;
        QByteArray xml = readPart(rel.target);
        checkPart(m_bookPath, rel.target, xml, "table");
        const QByteArrayView root = firstTag(xml, "table");
        const auto range = CellRange::parse(XmlText::attribute(root, "ref").value_or(QByteArray()));
        if (!range)
            damaged(rel.target, QStringLiteral("表格没有区域"));
        std::erase_if(layout.merges, [&](const CellRange &m) { return m.intersects(*range); });
        const bool hasHeader = XmlText::attribute(root, "headerRowCount").value_or("1") != "0";
        m_tables.push_back({rel.target, std::move(xml), *range, hasHeader});
        if (hasHeader)
            m_headerRows.push_back(range->row1);
    }
    std::sort(m_headerRows.begin(), m_headerRows.end());
    m_headerRows.erase(std::unique(m_headerRows.begin(), m_headerRows.end()), m_headerRows.end());
    return m_headerRows;
}

void SheetNeighbours::follow(int row, RowCells &cells, const SheetLayout &layout)
{
    for (Table &table : m_tables)
        if (table.hasHeader && table.range.row1 == row)
            renameColumns(table, cells, layout);
}

void SheetNeighbours::renameColumns(Table &table, RowCells &cells, const SheetLayout &layout)
{
    // The column elements in order, and what their header cells will show.
    struct Column {
        qsizetype begin, end;
        QString name;
        bool changed;
    };
    std::vector<Column> columns;
    const int row = table.range.row1;
    qsizetype pos = 0;
    XmlTag tag;
    while (XmlText::nextTag(table.xml, pos, tag)) {
        if (tag.closing || tag.localName() != "tableColumn")
            continue;
        const QByteArrayView text = QByteArrayView(table.xml).sliced(tag.begin, tag.end - tag.begin);
        const int col = table.range.col1 + int(columns.size());
        const auto shown = newHeaderText(cells, layout, row, col, m_date1904);
        columns.push_back(
            {tag.begin, tag.end,
             shown ? *shown : XmlText::unescape(XmlText::rawAttribute(text, "name").value_or("")),
             shown.has_value()});
    }
    if (std::none_of(columns.begin(), columns.end(), [](const Column &c) { return c.changed; }))
        return;

    // Unique ignoring case, none empty: "Column3" for a blank third cell,
    // "金额2" for a second "金额".
    QSet<QString> taken;
    for (const Column &c : columns)
        if (!c.changed)
            taken.insert(c.name.toCaseFolded());
    for (size_t i = 0; i < columns.size(); ++i) {
        Column &c = columns[i];
        if (!c.changed)
            continue;
        const QString base = c.name.isEmpty() ? QStringLiteral("Column%1").arg(i + 1) : c.name;
        QString name = base;
        for (int n = 2; taken.contains(name.toCaseFolded()); ++n)
            name = base + QString::number(n);
        taken.insert(name.toCaseFolded());
        const int col = table.range.col1 + int(i);
        auto it = cellAt(cells, col);
        if (it == cells.end() || it->col != col)
            it = cells.insert(it, RowCell{quint16(col), CellInput::Kind::Empty, 0, {}});
        const bool holdsName = name == c.name && (it->kind == CellInput::Kind::Text ||
                                                  it->kind == CellInput::Kind::QuotedText);
        if (!holdsName) {
            it->kind = CellInput::Kind::Text;
            it->text = name;
        }
        c.name = name;
    }
    for (auto it = columns.rbegin(); it != columns.rend(); ++it) {
        if (!it->changed)
            continue;
        const QByteArray start = table.xml.mid(it->begin, it->end - it->begin);
        table.xml.replace(it->begin, it->end - it->begin,
                          XmlText::setAttribute(start, "name", it->name.toUtf8()));
    }
    m_package.put(table.part, table.xml);
}

} // namespace quorvale::xlsx
