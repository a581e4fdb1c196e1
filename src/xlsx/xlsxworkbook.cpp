#include "xlsx/xlsxworkbook.h"

#include "xlsx/xlsxbytesink.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxpartcheck.h"
#include "xlsx/xlsxsharedstrings.h"
#include "xlsx/xlsxsheetdata.h"
#include "xlsx/xlsxsheetwriter.h"
#include "xlsx/xlsxstylesheet.h"
#include "xlsx/xlsxworksheet.h"
#include "xlsx/xlsxxmltext.h"

#include <QFileInfo>
#include <QXmlStreamReader>

namespace quorvale::xlsx {

namespace {

const char *const RelNs = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const char *const WorksheetRel =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet";
const char *const StylesRel =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles";
const char *const SharedStringsRel =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings";
const char *const WorksheetType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
const char *const StylesType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";
const char *const SharedStringsType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml";

[[noreturn]] void notAWorkbook(const QString &path)
{
    throw Error(ErrorNumber::WorkbookError,
                       QStringLiteral("“%1”不是有效的 Excel 工作簿（.xlsx），或文件已损坏")
                           .arg(Package::displayName(path)));
}

struct Relationship {
    QString id, type, target;
};

// Relationship targets are relative to the folder of the part that owns them.
QString resolveTarget(const QString &ownerPart, const QString &target)
{
    if (target.startsWith(u'/'))
        return target.mid(1);
    QString dir = ownerPart.left(ownerPart.lastIndexOf(u'/') + 1);
    QStringList parts = (dir + target).split(u'/');
    QStringList out;
    for (const QString &p : parts) {
        if (p == QLatin1String(".."))
            out.isEmpty() ? void() : out.removeLast();
        else if (p != QLatin1String("."))
            out.append(p);
    }
    return out.join(u'/');
}

QString relsPartOf(const QString &part)
{
    const qsizetype slash = part.lastIndexOf(u'/');
    return part.left(slash + 1) + QStringLiteral("_rels/") + part.mid(slash + 1) +
           QStringLiteral(".rels");
}

std::vector<Relationship> readRelationships(const QByteArray &xml, const QString &ownerPart,
                                            bool &ok)
{
    std::vector<Relationship> rels;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement &&
            reader.name() == QLatin1String("Relationship")) {
            const auto a = reader.attributes();
            const QString mode = a.value(QLatin1String("TargetMode")).toString();
            QString target = a.value(QLatin1String("Target")).toString();
            if (mode != QLatin1String("External"))
                target = resolveTarget(ownerPart, target);
            rels.push_back({a.value(QLatin1String("Id")).toString(),
                            a.value(QLatin1String("Type")).toString(), target});
        }
    }
    ok = !reader.hasError();
    return rels;
}

struct SheetTag {
    qsizetype begin, end;
    QByteArray relId;
    QString name;
    QByteArray state;
    int sheetId;
};

std::vector<SheetTag> sheetTags(const QByteArray &xml, const QByteArray &relPrefix)
{
    std::vector<SheetTag> tags;
    qsizetype pos = 0;
    XmlTag tag;
    bool inSheets = false;
    while (XmlText::nextTag(xml, pos, tag)) {
        const QByteArrayView local = tag.localName();
        if (local == "sheets") {
            inSheets = !tag.closing && !tag.selfClosing;
            if (!inSheets && tag.closing)
                break;
            continue;
        }
        if (!inSheets || tag.closing || local != "sheet")
            continue;
        const QByteArrayView text = QByteArrayView(xml).sliced(tag.begin, tag.end - tag.begin);
        SheetTag s;
        s.begin = tag.begin;
        s.end = tag.selfClosing ? tag.end : XmlText::elementEnd(xml, tag);
        s.relId = XmlText::attribute(text, relPrefix + "id").value_or(QByteArray());
        s.name = QString::fromUtf8(XmlText::attribute(text, "name").value_or(QByteArray()));
        s.state = XmlText::attribute(text, "state").value_or(QByteArray());
        s.sheetId = XmlText::attribute(text, "sheetId").value_or("0").toInt();
        if (s.end > tag.end)
            pos = s.end;
        tags.push_back(std::move(s));
    }
    return tags;
}

// Inserts text before the last end tag (the root's) of a part.
void insertBeforeRootEnd(QByteArray &xml, const QByteArray &text)
{
    const qsizetype at = xml.lastIndexOf("</");
    xml.insert(at < 0 ? xml.size() : at, text);
}

// Removes every self-closing element whose tag text contains the needle.
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

void Workbook::loadNew()
{
    m_package = std::make_unique<Package>();
    m_package->put(QStringLiteral("[Content_Types].xml"),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                   "<Default Extension=\"rels\" "
                   "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
                   "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
                   "<Override PartName=\"/xl/workbook.xml\" ContentType=\"application/"
                   "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
                   "<Override PartName=\"/xl/worksheets/sheet1.xml\" ContentType=\"" +
                       QByteArray(WorksheetType) +
                       "\"/><Override PartName=\"/xl/styles.xml\" ContentType=\"" +
                       QByteArray(StylesType) + "\"/></Types>");
    m_package->put(QStringLiteral("_rels/.rels"),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<Relationships "
                   "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                   "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/"
                   "officeDocument/2006/relationships/officeDocument\" "
                   "Target=\"xl/workbook.xml\"/></Relationships>");
    m_package->put(QStringLiteral("xl/workbook.xml"),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
                   "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/"
                   "relationships\"><bookViews><workbookView/></bookViews><sheets>"
                   "<sheet name=\"Sheet1\" sheetId=\"1\" r:id=\"rId1\"/></sheets></workbook>");
    m_package->put(QStringLiteral("xl/_rels/workbook.xml.rels"),
                   "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                   "<Relationships "
                   "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                   "<Relationship Id=\"rId1\" Type=\"" +
                       QByteArray(WorksheetRel) +
                       "\" Target=\"worksheets/sheet1.xml\"/><Relationship Id=\"rId2\" Type=\"" +
                       QByteArray(StylesRel) + "\" Target=\"styles.xml\"/></Relationships>");
    m_package->put(QStringLiteral("xl/styles.xml"), StyleSheet::defaultXml());
    m_package->put(QStringLiteral("xl/worksheets/sheet1.xml"), SheetWriter::emptySheetXml());
    readParts();
    m_sheets.front() = std::make_unique<Worksheet>(*this, m_sheets.front()->name(),
                                                   m_sheets.front()->partName(), true);
    m_relIds.insert(m_sheets.front().get(), "rId1");
    m_partsDirty = true;
}

void Workbook::load()
{
    m_package = Package::openFile(m_path);
    readParts();
}

void Workbook::readParts()
{
    const QString contentTypesPart = QStringLiteral("[Content_Types].xml");
    const QString packageRelsPart = QStringLiteral("_rels/.rels");
    if (!m_package->contains(contentTypesPart) || !m_package->contains(packageRelsPart))
        notAWorkbook(m_path);
    bool ok = false;
    const QByteArray packageRels = m_package->read(packageRelsPart);
    checkPart(m_path, packageRelsPart, packageRels, "Relationships");
    m_workbookPart = QStringLiteral("xl/workbook.xml");
    for (const Relationship &rel : readRelationships(packageRels, QString(), ok))
        if (rel.type.endsWith(QLatin1String("/officeDocument")))
            m_workbookPart = rel.target;
    if (!m_package->contains(m_workbookPart))
        notAWorkbook(m_path);
    m_workbookRelsPart = relsPartOf(m_workbookPart);
    m_contentTypesXml = m_package->read(contentTypesPart);
    checkPart(m_path, contentTypesPart, m_contentTypesXml, "Types");
    m_workbookXml = m_package->read(m_workbookPart);
    checkPart(m_path, m_workbookPart, m_workbookXml, "workbook");
    if (!m_package->contains(m_workbookRelsPart))
        notAWorkbook(m_path);
    m_relsXml = m_package->read(m_workbookRelsPart);
    checkPart(m_path, m_workbookRelsPart, m_relsXml, "Relationships");
    const auto rels = readRelationships(m_relsXml, m_workbookPart, ok);
    if (!ok)
        notAWorkbook(m_path);

    qsizetype pos = 0;
    XmlTag root;
    if (!XmlText::nextTag(m_workbookXml, pos, root) || root.localName() != "workbook")
        notAWorkbook(m_path);
    const QByteArrayView rootText = QByteArrayView(m_workbookXml).first(root.end);
    m_relPrefix = "r:";
    m_relNsDeclared = false;
    const qsizetype nsAt = rootText.indexOf(QByteArray("\"") + RelNs + "\"");
    if (nsAt > 0) {
        m_relNsDeclared = true;
        const qsizetype xmlns = rootText.lastIndexOf("xmlns:", nsAt);
        const qsizetype eq = rootText.indexOf('=', xmlns);
        if (xmlns >= 0 && eq > xmlns)
            m_relPrefix = rootText.sliced(xmlns + 6, eq - xmlns - 6).trimmed().toByteArray() + ":";
    }

    m_sheets.clear();
    m_relIds.clear();
    m_otherSheetNames.clear();
    for (const SheetTag &tag : sheetTags(m_workbookXml, m_relPrefix)) {
        const auto rel = std::find_if(rels.begin(), rels.end(), [&](const Relationship &r) {
            return r.id == QString::fromUtf8(tag.relId);
        });
        if (rel == rels.end() || !rel->type.endsWith(QLatin1String("/worksheet"))) {
            m_otherSheetNames.append(tag.name);
            continue;
        }
        auto sheet = std::make_unique<Worksheet>(*this, tag.name, rel->target, false);
        sheet->setHiddenState(!tag.state.isEmpty() && tag.state != "visible");
        m_relIds.insert(sheet.get(), tag.relId);
        m_sheets.push_back(std::move(sheet));
    }
    if (m_sheets.empty() && m_otherSheetNames.isEmpty())
        notAWorkbook(m_path);

    m_stylesPart.clear();
    m_stringsPart.clear();
    m_calcChainPart.clear();
    for (const Relationship &rel : rels) {
        if (rel.type.endsWith(QLatin1String("/styles")))
            m_stylesPart = rel.target;
        else if (rel.type.endsWith(QLatin1String("/sharedStrings")))
            m_stringsPart = rel.target;
        else if (rel.type.endsWith(QLatin1String("/calcChain")))
            m_calcChainPart = rel.target;
    }
    if (m_stylesPart.isEmpty()) {
        m_styles = std::make_unique<StyleSheet>(StyleSheet::defaultXml());
    } else {
        if (!m_package->contains(m_stylesPart))
            damagedPart(m_path, m_stylesPart, QStringLiteral("工作簿引用了它，但它不存在"));
        QByteArray styles = m_package->read(m_stylesPart);
        checkPart(m_path, m_stylesPart, styles, "styleSheet");
        m_styles = std::make_unique<StyleSheet>(std::move(styles));
    }
    readSharedStrings();
}

void Workbook::readSharedStrings()
{
    if (m_stringsPart.isEmpty()) {
        // New strings would take the indexes that existing cells already
        // point at, so a sheet referring to a table that is not there is a
        // damaged workbook, not an empty table.
        for (const auto &sheet : m_sheets)
            if (refersToSharedStrings(m_package->read(sheet->partName())))
                damagedPart(m_path, QStringLiteral("xl/sharedStrings.xml"),
                            QStringLiteral("它不存在，但工作表“%1”引用了其中的文字")
                                .arg(sheet->name()));
        m_strings = std::make_unique<SharedStrings>();
        return;
    }
    if (!m_package->contains(m_stringsPart))
        damagedPart(m_path, m_stringsPart, QStringLiteral("工作簿引用了它，但它不存在"));
    QByteArray xml = m_package->read(m_stringsPart);
    const int items = checkPart(m_path, m_stringsPart, xml, "sst", "si");
    m_strings = std::make_unique<SharedStrings>(std::move(xml));
    if (m_strings->existingCount() != quint32(items))
        damagedPart(m_path, m_stringsPart, QStringLiteral("条目无法识别"));
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

void Workbook::addPart(const QString &part, const char *relType, const char *contentType)
{
    int next = 1;
    bool ok = false;
    for (const Relationship &rel : readRelationships(m_relsXml, m_workbookPart, ok))
        if (rel.id.startsWith(QLatin1String("rId")))
            next = std::max(next, rel.id.mid(3).toInt() + 1);
    const QString wbDir = m_workbookPart.left(m_workbookPart.lastIndexOf(u'/') + 1);
    const QString target = part.startsWith(wbDir) ? part.mid(wbDir.size()) : u'/' + part;
    const QByteArray id = "rId" + QByteArray::number(next);
    insertBeforeRootEnd(m_relsXml, "<Relationship Id=\"" + id + "\" Type=\"" + relType +
                                       "\" Target=\"" + XmlText::escape(target) + "\"/>");
    insertBeforeRootEnd(m_contentTypesXml, "<Override PartName=\"/" + XmlText::escape(part) +
                                               "\" ContentType=\"" + contentType + "\"/>");
    m_partsDirty = true;
}

Worksheet &Workbook::addWorksheetAfterLast()
{
    const QString wbDir = m_workbookPart.left(m_workbookPart.lastIndexOf(u'/') + 1);
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
    addPart(part, WorksheetRel, WorksheetType);
    bool ok = false;
    const auto rels = readRelationships(m_relsXml, m_workbookPart, ok);
    const QByteArray relId = rels.back().id.toUtf8();

    const auto tags = sheetTags(m_workbookXml, m_relPrefix);
    int sheetId = 0;
    for (const SheetTag &tag : tags)
        sheetId = std::max(sheetId, tag.sheetId);
    qsizetype at = -1;
    QByteArray elementPrefix;
    for (const SheetTag &tag : tags) {
        for (const auto &sheet : m_sheets)
            if (m_relIds.value(sheet.get()) == tag.relId)
                at = tag.end;
        XmlTag t;
        qsizetype p = tag.begin;
        XmlText::nextTag(m_workbookXml, p, t);
        elementPrefix = t.prefix().toByteArray();
    }
    QByteArray element = "<" + elementPrefix + "sheet name=\"" + XmlText::escape(name) +
                         "\" sheetId=\"" + QByteArray::number(sheetId + 1) + "\" " + m_relPrefix +
                         "id=\"" + relId + "\"/>";
    if (!m_relNsDeclared) // some writers declare it on each sheet element instead
        element.insert(elementPrefix.size() + 7, "xmlns:r=\"" + QByteArray(RelNs) + "\" ");
    if (at < 0) {
        const qsizetype close = m_workbookXml.indexOf("sheets>");
        const qsizetype lt = close < 0 ? -1 : m_workbookXml.lastIndexOf('<', close);
        if (lt < 0 || m_workbookXml.at(lt + 1) != '/')
            throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作簿结构已损坏，无法添加工作表"));
        at = lt;
    }
    m_workbookXml.insert(at, element);
    auto sheet = std::make_unique<Worksheet>(*this, name, part, true);
    m_relIds.insert(sheet.get(), relId);
    m_sheets.push_back(std::move(sheet));
    return *m_sheets.back();
}

QByteArray Workbook::originalPart(const Worksheet &sheet) const
{
    return m_package->readOriginal(sheet.partName());
}

void Workbook::sheetRenamed(Worksheet &sheet)
{
    editSheetTag(sheet, [&sheet](const QByteArray &tag) {
        return XmlText::setAttribute(tag, "name", sheet.name().toUtf8());
    });
}

void Workbook::sheetVisibilityChanged(Worksheet &sheet)
{
    editSheetTag(sheet, [&sheet](const QByteArray &tag) {
        return sheet.isVisible() ? XmlText::removeAttribute(tag, "state")
                                 : XmlText::setAttribute(tag, "state", "hidden");
    });
}

void Workbook::editSheetTag(const Worksheet &sheet,
                            const std::function<QByteArray(const QByteArray &)> &edit)
{
    for (const SheetTag &tag : sheetTags(m_workbookXml, m_relPrefix)) {
        if (tag.relId != m_relIds.value(&sheet))
            continue;
        qsizetype p = tag.begin;
        XmlTag t;
        XmlText::nextTag(m_workbookXml, p, t);
        m_workbookXml.replace(t.begin, t.end - t.begin,
                              edit(m_workbookXml.mid(t.begin, t.end - t.begin)));
        m_partsDirty = true;
        return;
    }
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

void Workbook::save()
{
    prepareParts();
    m_package->save(m_path);
}

void Workbook::write(QIODevice &out)
{
    prepareParts();
    m_package->write(out, m_path);
}

void Workbook::finishSheet(Worksheet &sheet)
{
    writeSheetPart(sheet, true);
}

void Workbook::writeSheetPart(Worksheet &sheet, bool longBeforeSave)
{
    if (!sheet.isModified())
        return;
    // Always merge into the sheet as it was opened, so saving twice gives the same file.
    const QByteArray original =
        sheet.isNew() ? QByteArray() : m_package->readOriginal(sheet.partName());
    SheetWriter writer(sheet.data(), *m_styles, original);
    m_package->putGenerated(
        sheet.partName(), [&writer](ByteSink &sink) { writer.write(sink); },
        longBeforeSave ? Package::Hold::DiskIfLarge : Package::Hold::Memory);
    m_formulasOverwritten = m_formulasOverwritten || writer.overwroteFormulas();
    sheet.markFinished();
}

void Workbook::prepareParts()
{
    for (const auto &sheet : m_sheets)
        if (!sheet->isFinished())
            writeSheetPart(*sheet, false);
    if (m_formulasOverwritten)
        dropCalcChain();
    if (m_strings->isModified()) {
        if (m_stringsPart.isEmpty()) {
            const QString wbDir = m_workbookPart.left(m_workbookPart.lastIndexOf(u'/') + 1);
            m_stringsPart = wbDir + QStringLiteral("sharedStrings.xml");
            addPart(m_stringsPart, SharedStringsRel, SharedStringsType);
        }
        m_package->putGenerated(m_stringsPart, [this](ByteSink &sink) { m_strings->write(sink); });
    }
    if (m_styles->isModified() || m_stylesPart.isEmpty()) {
        if (m_stylesPart.isEmpty()) {
            const QString wbDir = m_workbookPart.left(m_workbookPart.lastIndexOf(u'/') + 1);
            m_stylesPart = wbDir + QStringLiteral("styles.xml");
            addPart(m_stylesPart, StylesRel, StylesType);
        }
        m_package->put(m_stylesPart, m_styles->toXml());
    }
    if (m_partsDirty) {
        // Parts whose text came out the same keep their original bytes.
        const std::pair<QString, const QByteArray *> parts[] = {
            {m_workbookPart, &m_workbookXml},
            {m_workbookRelsPart, &m_relsXml},
            {QStringLiteral("[Content_Types].xml"), &m_contentTypesXml}};
        for (const auto &[part, xml] : parts)
            if (m_package->read(part) != *xml)
                m_package->put(part, *xml);
    }
}

} // namespace quorvale::xlsx
