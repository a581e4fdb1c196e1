#include "xlsx/xlsxsheetneighbours.h"

#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxpartcheck.h"
#include "xlsx/xlsxsharedstrings.h"
#include "xlsx/xlsxsheetdata.h"
#include "xlsx/xlsxxmltext.h"

#include <QSet>
#include <algorithm>

namespace quorvale::xlsx {

namespace {

// The start tag of the first element with the local name, as text.
QByteArrayView firstTag(QByteArrayView xml, QByteArrayView localName, qsizetype *at = nullptr)
{
    qsizetype pos = 0;
    XmlTag tag;
    while (XmlText::nextTag(xml, pos, tag)) {
        if (!tag.closing && tag.localName() == localName) {
            if (at)
                *at = tag.begin;
            return xml.sliced(tag.begin, tag.end - tag.begin);
        }
    }
    return {};
}

// What a header cell shows once the block is written: nullopt when the
// export leaves it as it was.
std::optional<QString> newHeaderText(const SheetData &data, const SharedStrings &strings, int row,
                                     int col, bool date1904)
{
    if (const CellRecord *cell = data.find(row, col)) {
        switch (cell->kind) {
        case CellInput::Kind::Text:
        case CellInput::Kind::QuotedText:
            return strings.added(cell->string).toString();
        case CellInput::Kind::Empty:
            return QString();
        default:
            return CellInput::displayText(cell->kind, cell->number,
                                          date1904 ? CellInput::DateSystem::From1904
                                                   : CellInput::DateSystem::From1900);
        }
    }
    if (data.isCleared(row, col))
        return QString();
    return std::nullopt;
}

} // namespace

SheetNeighbours::SheetNeighbours(Package &package, const QString &bookPath,
                                 const QString &sheetPart, const QString &sheetName)
    : m_package(package), m_bookPath(bookPath), m_sheetName(sheetName)
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

void SheetNeighbours::refuseOverlappingPivotTables(const SheetData &data) const
{
    const CellRange block = data.bounds();
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
        throw Error(
            ErrorNumber::WorkbookError,
            QStringLiteral("工作表“%1”中的数据透视表“%2”（%3）与要写入的区域（%4）重叠，"
                           "Excel 不能改写数据透视表中的单元格；文件未作修改。请换一个"
                           "工作表名称，或先在 Excel 中移走这个数据透视表")
                .arg(m_sheetName, QString::fromUtf8(XmlText::attribute(root, "name").value_or("")),
                     QString::fromLatin1(location->ref()), QString::fromLatin1(block.ref())));
    }
}

void SheetNeighbours::followTableHeaders(SheetData &data, SharedStrings &strings, bool date1904)
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
        std::erase_if(data.merges, [&](const CellRange &m) { return m.intersects(*range); });
        if (XmlText::attribute(root, "headerRowCount").value_or("1") == "0")
            continue;

        // The column elements in order, and what their header cells will show.
        struct Column {
            qsizetype begin, end;
            QString name;
            bool changed;
        };
        std::vector<Column> columns;
        qsizetype pos = 0;
        XmlTag tag;
        while (XmlText::nextTag(xml, pos, tag)) {
            if (tag.closing || tag.localName() != "tableColumn")
                continue;
            const QByteArrayView text = QByteArrayView(xml).sliced(tag.begin, tag.end - tag.begin);
            const int col = range->col1 + int(columns.size());
            const auto shown = newHeaderText(data, strings, range->row1, col, date1904);
            columns.push_back(
                {tag.begin, tag.end,
                 shown ? *shown
                       : XmlText::unescape(XmlText::rawAttribute(text, "name").value_or("")),
                 shown.has_value()});
        }
        if (std::none_of(columns.begin(), columns.end(), [](const Column &c) { return c.changed; }))
            continue;

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
            const int col = range->col1 + int(i);
            const CellRecord *cell = data.find(range->row1, col);
            const bool holdsName =
                cell && name == c.name &&
                (cell->kind == CellInput::Kind::Text || cell->kind == CellInput::Kind::QuotedText);
            if (!holdsName) {
                CellInput header;
                header.kind = CellInput::Kind::Text;
                header.text = name;
                data.setCell(range->row1, col, header, strings);
            }
            c.name = name;
        }
        for (auto it = columns.rbegin(); it != columns.rend(); ++it) {
            if (!it->changed)
                continue;
            const QByteArray start = xml.mid(it->begin, it->end - it->begin);
            xml.replace(it->begin, it->end - it->begin,
                        XmlText::setAttribute(start, "name", it->name.toUtf8()));
        }
        m_package.put(rel.target, std::move(xml));
    }
}

} // namespace quorvale::xlsx
