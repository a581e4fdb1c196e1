#include "xlsx/xlsxworkbook.h"

#include "xlsx/xlsxbytesink.h"
#include "xlsx/xlsxchart.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxpartcheck.h"
#include "xlsx/xlsxrelationships.h"
#include "xlsx/xlsxsheetstream.h"
#include "xlsx/xlsxsheetwriter.h"
#include "xlsx/xlsxstylesheet.h"
#include "xlsx/xlsxworkbookxml.h"
#include "xlsx/xlsxworksheet.h"
#include "xlsx/xlsxxmltext.h"

#include <QFileInfo>
#include <algorithm>

namespace quorvale::xlsx {

namespace {

const char *const ContentTypesPart = "[Content_Types].xml";
const char *const WorksheetType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
const char *const StylesType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";

// The workbook part's content type says what kind of file it is; Excel
// refuses a file whose extension and type disagree.
QByteArray workbookContentType(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("xlsm"))
        return "application/vnd.ms-excel.sheet.macroEnabled.main+xml";
    if (suffix == QLatin1String("xltx"))
        return "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml";
    if (suffix == QLatin1String("xltm"))
        return "application/vnd.ms-excel.template.macroEnabled.main+xml";
    return "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
}

[[noreturn]] void notAWorkbook(const QString &path)
{
    throw Error(ErrorNumber::WorkbookError,
                QStringLiteral("“%1”不是有效的 Excel 工作簿（.xlsx），或文件已损坏")
                    .arg(Package::displayName(path)));
}

// Inserts text before the last end tag (the root's) of a part.
void insertBeforeRootEnd(QByteArray &xml, const QByteArray &text)
{
    const qsizetype at = xml.lastIndexOf("</");
    xml.insert(at < 0 ? xml.size() : at, text);
}

// Removes every element of the local name whose tag text contains the needle.
void removeTagsContaining(QByteArray &xml, QByteArrayView localName, QByteArrayView needle)
{
    qsizetype pos = 0;
    XmlTag tag;
    while (XmlText::nextTag(xml, pos, tag)) {
        if (tag.closing || tag.localName() != localName)
            continue;
        const qsizetype end = XmlText::elementEnd(xml, tag);
        if (QByteArrayView(xml).sliced(tag.begin, tag.end - tag.begin).contains(needle)) {
            xml.remove(tag.begin, end - tag.begin);
            pos = tag.begin;
        }
    }
}

// Whether a worksheet's XML has a cell of type "s" (a shared-string index).
bool refersToSharedStrings(const QByteArray &sheetXml)
{
    return sheetXml.contains(" t=\"s\"") || sheetXml.contains(" t='s'");
}

QString folderOf(const QString &part)
{
    return part.left(part.lastIndexOf(u'/') + 1);
}

} // namespace

Workbook::Workbook() = default;
Workbook::~Workbook() = default;

std::unique_ptr<Workbook> Workbook::create(const QString &path)
{
    std::unique_ptr<Workbook> book(new Workbook);
    book->m_path = path;
    book->loadNew();
    return book;
}

std::unique_ptr<Workbook> Workbook::open(const QString &path)
{
    std::unique_ptr<Workbook> book(new Workbook);
    book->m_path = path;
    book->load();
    return book;
}

std::unique_ptr<Workbook> Workbook::openCopy(const QString &copy, const QString &path)
{
    std::unique_ptr<Workbook> book(new Workbook);
    book->m_path = path;
    book->load(copy);
    return book;
}

void Workbook::loadNew()
{
    const Vocabulary &v = Vocabulary::Transitional;
    m_package = std::make_unique<Package>();
    m_package->put(QString::fromLatin1(ContentTypesPart),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                   "<Default Extension=\"rels\" "
                   "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
                   "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
                   "<Override PartName=\"/xl/workbook.xml\" ContentType=\"" +
                       workbookContentType(m_path) +
                       "\"/><Override PartName=\"/xl/worksheets/sheet1.xml\" ContentType=\"" +
                       WorksheetType + "\"/><Override PartName=\"/xl/styles.xml\" ContentType=\"" +
                       StylesType + "\"/></Types>");
    m_package->put(QStringLiteral("_rels/.rels"),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<Relationships "
                   "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                   "<Relationship Id=\"rId1\" Type=\"" +
                       v.relationshipType("officeDocument") +
                       "\" Target=\"xl/workbook.xml\"/></Relationships>");
    m_package->put(QStringLiteral("xl/workbook.xml"),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<workbook xmlns=\"" +
                       QByteArray(v.main) + "\" xmlns:r=\"" + v.relationships +
                       "\"><bookViews><workbookView/></bookViews><sheets>"
                       "<sheet name=\"Sheet1\" sheetId=\"1\" r:id=\"rId1\"/></sheets></workbook>");
    m_package->put(QStringLiteral("xl/_rels/workbook.xml.rels"),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<Relationships "
                   "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                   "<Relationship Id=\"rId1\" Type=\"" +
                       v.relationshipType("worksheet") +
                       "\" Target=\"worksheets/sheet1.xml\"/><Relationship Id=\"rId2\" Type=\"" +
                       v.relationshipType("styles") + "\" Target=\"styles.xml\"/></Relationships>");
    m_package->put(QStringLiteral("xl/styles.xml"), StyleSheet::defaultXml(v));
    m_package->put(QStringLiteral("xl/worksheets/sheet1.xml"), SheetWriter::emptySheetXml(v));
    readParts();
    m_sheets.front() = std::make_unique<Worksheet>(*this, m_sheets.front()->name(),
                                                   m_sheets.front()->partName(), true);
    m_relIds.insert(m_sheets.front().get(), "rId1");
    m_partsDirty = true;
}

void Workbook::load(const QString &readFrom)
{
    m_package = Package::openFile(m_path, readFrom);
    readParts();
}

void Workbook::readParts()
{
    const QString contentTypesPart = QString::fromLatin1(ContentTypesPart);
    const QString packageRelsPart = QStringLiteral("_rels/.rels");
    if (!m_package->contains(contentTypesPart) || !m_package->contains(packageRelsPart))
        notAWorkbook(m_path);
    bool ok = false;
    const QByteArray packageRels = m_package->read(packageRelsPart);
    checkPart(m_path, packageRelsPart, packageRels, "Relationships");
    m_workbookPart = QStringLiteral("xl/workbook.xml");
    for (const Relationship &rel : readRelationships(packageRels, QString(), ok))
        if (rel.isOfType(QLatin1StringView("officeDocument")))
            m_workbookPart = rel.target;
    if (!m_package->contains(m_workbookPart))
        notAWorkbook(m_path);
    m_workbookRelsPart = relationshipsPartOf(m_workbookPart);
    m_contentTypesXml = m_package->read(contentTypesPart);
    checkPart(m_path, contentTypesPart, m_contentTypesXml, "Types");
    QByteArray workbookXml = m_package->read(m_workbookPart);
    checkPart(m_path, m_workbookPart, workbookXml, "workbook");
    m_workbookXml = std::make_unique<WorkbookXml>(std::move(workbookXml));
    if (!m_workbookXml->isValid())
        notAWorkbook(m_path);
    if (!m_package->contains(m_workbookRelsPart))
        notAWorkbook(m_path);
    m_relsXml = m_package->read(m_workbookRelsPart);
    checkPart(m_path, m_workbookRelsPart, m_relsXml, "Relationships");
    const auto rels = readRelationships(m_relsXml, m_workbookPart, ok);
    if (!ok)
        notAWorkbook(m_path);

    m_sheets.clear();
    m_relIds.clear();
    m_otherSheetNames.clear();
    for (const WorkbookXml::Sheet &tag : m_workbookXml->sheets()) {
        const auto rel = std::find_if(rels.begin(), rels.end(), [&](const Relationship &r) {
            return r.id == QString::fromUtf8(tag.relId);
        });
        if (rel == rels.end() || !rel->isOfType(QLatin1StringView("worksheet"))) {
            m_otherSheetNames.append(tag.name);
            continue;
        }
        auto sheet = std::make_unique<Worksheet>(*this, tag.name, rel->target, false);
        sheet->setHiddenState(tag.hidden);
        m_relIds.insert(sheet.get(), tag.relId);
        m_sheets.push_back(std::move(sheet));
    }
    if (m_sheets.empty() && m_otherSheetNames.isEmpty())
        damagedPart(m_path, m_workbookPart, QStringLiteral("工作簿中没有工作表"));

    m_stylesPart.clear();
    m_stringsPart.clear();
    m_calcChainPart.clear();
    for (const Relationship &rel : rels) {
        if (rel.isOfType(QLatin1StringView("styles")))
            m_stylesPart = rel.target;
        else if (rel.isOfType(QLatin1StringView("sharedStrings")))
            m_stringsPart = rel.target;
        else if (rel.isOfType(QLatin1StringView("calcChain")))
            m_calcChainPart = rel.target;
    }
    const Vocabulary &vocabulary = m_workbookXml->vocabulary();
    if (m_stylesPart.isEmpty()) {
        m_styles = std::make_unique<StyleSheet>(StyleSheet::defaultXml(vocabulary));
    } else {
        if (!m_package->contains(m_stylesPart))
            damagedPart(m_path, m_stylesPart, QStringLiteral("工作簿引用了它，但它不存在"));
        QByteArray styles = m_package->read(m_stylesPart);
        checkPart(m_path, m_stylesPart, styles, "styleSheet");
        m_styles = std::make_unique<StyleSheet>(std::move(styles));
    }
    checkSharedStrings();
}

// The export writes its texts into the cells and never adds to the shared
// strings, but a table that is missing or malformed while cells point into
// it is a damaged workbook, refused like any other.
void Workbook::checkSharedStrings()
{
    if (m_stringsPart.isEmpty()) {
        for (const auto &sheet : m_sheets)
            if (refersToSharedStrings(m_package->read(sheet->partName())))
                damagedPart(m_path, QStringLiteral("xl/sharedStrings.xml"),
                            QStringLiteral("它不存在，但工作表“%1”引用了其中的文字")
                                .arg(sheet->name()));
        return;
    }
    if (!m_package->contains(m_stringsPart))
        damagedPart(m_path, m_stringsPart, QStringLiteral("工作簿引用了它，但它不存在"));
    checkPart(m_path, m_stringsPart, m_package->read(m_stringsPart), "sst", "si");
}

bool Workbook::usesDate1904() const
{
    return m_workbookXml->usesDate1904();
}

void Workbook::warn(const QString &text)
{
    m_warnings.append(text);
}

Worksheet &Workbook::worksheet(int index)
{
    if (index < 1 || index > worksheetCount())
        throw Error(ErrorNumber::SubscriptOutOfRange, QStringLiteral("下标越界"));
    return *m_sheets[size_t(index - 1)];
}

Worksheet *Workbook::worksheet(const QString &name)
{
    for (const auto &sheet : m_sheets)
        if (sheet->name().compare(name, Qt::CaseInsensitive) == 0)
            return sheet.get();
    return nullptr;
}

bool Workbook::isNameTaken(const QString &name, const Worksheet *except) const
{
    for (const auto &sheet : m_sheets)
        if (sheet.get() != except && sheet->name().compare(name, Qt::CaseInsensitive) == 0)
            return true;
    for (const QString &other : m_otherSheetNames)
        if (other.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

QString Workbook::uniqueDefaultName() const
{
    for (int n = worksheetCount() + 1;; ++n) {
        const QString name = QStringLiteral("Sheet%1").arg(n);
        if (!isNameTaken(name, nullptr))
            return name;
    }
}

QByteArray Workbook::addPart(const QString &part, QByteArrayView relType, const char *contentType)
{
    int next = 1;
    bool ok = false;
    for (const Relationship &rel : readRelationships(m_relsXml, m_workbookPart, ok))
        if (rel.id.startsWith(QLatin1String("rId")))
            next = std::max(next, rel.id.mid(3).toInt() + 1);
    const QString wbDir = folderOf(m_workbookPart);
    const QString target = part.startsWith(wbDir) ? part.mid(wbDir.size()) : u'/' + part;
    const QByteArray id = "rId" + QByteArray::number(next);
    insertBeforeRootEnd(m_relsXml, "<Relationship Id=\"" + id + "\" Type=\"" +
                                       m_workbookXml->vocabulary().relationshipType(relType) +
                                       "\" Target=\"" + XmlText::escape(target) + "\"/>");
    insertBeforeRootEnd(m_contentTypesXml, "<Override PartName=\"/" + XmlText::escape(part) +
                                               "\" ContentType=\"" + contentType + "\"/>");
    m_partsDirty = true;
    return id;
}

void Workbook::refuseWhenStructureLocked(const QString &sheetName) const
{
    if (!m_workbookXml->isStructureLocked())
        return;
    const QString sheet = sheetName.isEmpty() ? QString() : QStringLiteral("“%1”").arg(sheetName);
    throw Error(ErrorNumber::WorkbookError,
                QStringLiteral("工作簿“%1”的结构在 Excel 中受保护（审阅 → 保护工作簿），不能添加工作表%2："
                               "请在 Excel 中打开它，点 审阅 → 保护工作簿 撤销保护，或输出到已有的工作表")
                    .arg(Package::displayName(m_path), sheet));
}

Worksheet &Workbook::addWorksheet(const QString &name)
{
    refuseWhenStructureLocked(name);
    Worksheet::checkName(name);
    if (isNameTaken(name, nullptr))
        Worksheet::nameTaken(name);
    Worksheet &added = addWorksheetAfterLast();
    added.setName(name);
    return added;
}

Worksheet &Workbook::addWorksheetAfterLast()
{
    refuseWhenStructureLocked({});
    const QString wbDir = folderOf(m_workbookPart);
    QString part;
    for (int n = worksheetCount() + 1;; ++n) {
        part = wbDir + QStringLiteral("worksheets/sheet%1.xml").arg(n);
        bool used = m_package->contains(part);
        for (const auto &sheet : m_sheets)
            used = used || sheet->partName().compare(part, Qt::CaseInsensitive) == 0;
        if (!used)
            break;
    }
    const QString name = uniqueDefaultName();
    const QByteArray after = m_sheets.empty() ? QByteArray() : m_relIds.value(m_sheets.back().get());
    const QByteArray relId = addPart(part, "worksheet", WorksheetType);
    if (!m_workbookXml->insertSheet(name, relId, after))
        throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作簿结构已损坏，无法添加工作表"));
    auto sheet = std::make_unique<Worksheet>(*this, name, part, true);
    m_relIds.insert(sheet.get(), relId);
    m_sheets.push_back(std::move(sheet));
    return *m_sheets.back();
}

QByteArray Workbook::addCharts(const Worksheet &sheet, const std::vector<Chart> &charts)
{
    if (!sheet.isNew())
        throw Error(ErrorNumber::WorkbookError,
                    QStringLiteral("图表只能加在新建的工作表上：“%1”").arg(sheet.name()));
    const QByteArray id = putSheetCharts(*m_package, m_contentTypesXml, sheet.partName(),
                                         sheet.name(), charts, m_workbookXml->vocabulary());
    m_partsDirty = true;
    return id;
}

void Workbook::removeWorksheet(Worksheet &sheet)
{
    refuseWhenStructureLocked(sheet.name());
    const QByteArray relId = m_relIds.value(&sheet);
    if (!m_workbookXml->removeSheet(relId))
        throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作簿结构已损坏，无法删除工作表"));
    removeTagsContaining(m_relsXml, "Relationship", "Id=\"" + relId + "\"");
    // The parts only this sheet used: its drawing and the drawing's charts.
    QStringList parts{sheet.partName()};
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QString rels = relationshipsPartOf(parts[i]);
        if (!m_package->contains(rels))
            continue;
        bool ok = false;
        for (const Relationship &rel : readRelationships(m_package->read(rels), parts[i], ok))
            if (!rel.external &&
                (rel.isOfType(QLatin1String("drawing")) || rel.isOfType(QLatin1String("chart"))))
                parts << rel.target;
        m_package->remove(rels);
    }
    for (const QString &part : parts) {
        if (m_package->contains(part))
            m_package->remove(part);
        removeTagsContaining(m_contentTypesXml, "Override",
                             "PartName=\"/" + XmlText::escape(part) + "\"");
    }
    m_relIds.remove(&sheet);
    m_sheets.erase(std::find_if(m_sheets.begin(), m_sheets.end(),
                                [&](const auto &s) { return s.get() == &sheet; }));
    m_partsDirty = true;
}

void Workbook::moveToFront(Worksheet &sheet)
{
    refuseWhenStructureLocked(sheet.name());
    if (!m_workbookXml->moveSheetFirst(m_relIds.value(&sheet)))
        throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作簿结构已损坏，无法移动工作表"));
    const auto it = std::find_if(m_sheets.begin(), m_sheets.end(),
                                 [&](const auto &s) { return s.get() == &sheet; });
    std::rotate(m_sheets.begin(), it, it + 1);
    m_partsDirty = true;
}

QByteArray Workbook::originalPart(const Worksheet &sheet) const
{
    return m_package->readOriginal(sheet.partName());
}

void Workbook::sheetRenamed(Worksheet &sheet)
{
    m_workbookXml->editSheet(m_relIds.value(&sheet), [&sheet](const QByteArray &tag) {
        return XmlText::setAttribute(tag, "name", sheet.name().toUtf8());
    });
    m_partsDirty = true;
}

void Workbook::sheetVisibilityChanged(Worksheet &sheet)
{
    m_workbookXml->editSheet(m_relIds.value(&sheet), [&sheet](const QByteArray &tag) {
        return sheet.isVisible() ? XmlText::removeAttribute(tag, "state")
                                 : XmlText::setAttribute(tag, "state", "hidden");
    });
    m_partsDirty = true;
}

void Workbook::dropCalcChain()
{
    if (m_calcChainPart.isEmpty())
        return;
    m_package->remove(m_calcChainPart);
    removeTagsContaining(m_relsXml, "Relationship", "/calcChain\"");
    removeTagsContaining(m_contentTypesXml, "Override",
                         "\"/" + XmlText::escape(m_calcChainPart) + "\"");
    m_calcChainPart.clear();
    m_partsDirty = true;
}

void Workbook::write(QIODevice &out)
{
    prepareParts();
    m_package->write(out, m_path);
}

void Workbook::finishSheet(Worksheet &sheet)
{
    if (sheet.finish())
        m_formulasOverwritten = true;
}

std::unique_ptr<SheetStream> Workbook::openStream(const Worksheet &sheet, SheetLayout &layout)
{
    // Always merge into the sheet as it was opened, so saving twice gives the same file.
    const SheetStream::Target target{
        *m_package,
        m_path,
        sheet.partName(),
        sheet.name(),
        sheet.isNew() ? QByteArray() : m_package->readOriginal(sheet.partName()),
        m_workbookXml->vocabulary(),
        usesDate1904()};
    return std::make_unique<SheetStream>(target, layout, *m_styles);
}

void Workbook::prepareParts()
{
    for (const auto &sheet : m_sheets)
        if (sheet->isModified())
            finishSheet(*sheet);
    if (m_formulasOverwritten)
        dropCalcChain();
    if (m_styles->isModified() || m_stylesPart.isEmpty()) {
        if (m_stylesPart.isEmpty()) {
            m_stylesPart = folderOf(m_workbookPart) + QStringLiteral("styles.xml");
            addPart(m_stylesPart, "styles", StylesType);
        }
        m_package->put(m_stylesPart, m_styles->toXml());
    }
    if (m_partsDirty) {
        // Parts whose text came out the same keep their original bytes.
        const std::pair<QString, const QByteArray *> parts[] = {
            {m_workbookPart, &m_workbookXml->xml()},
            {m_workbookRelsPart, &m_relsXml},
            {QString::fromLatin1(ContentTypesPart), &m_contentTypesXml}};
        for (const auto &[part, xml] : parts)
            if (m_package->read(part) != *xml)
                m_package->put(part, *xml);
    }
}

} // namespace quorvale::xlsx
