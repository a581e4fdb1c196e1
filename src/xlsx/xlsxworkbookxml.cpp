#include "xlsx/xlsxworkbookxml.h"

#include "xlsx/xlsxxmltext.h"

#include <algorithm>

namespace quorvale::xlsx {

namespace {

bool isRelationshipsNamespace(QByteArrayView uri)
{
    return Vocabulary::ofRelationshipsNamespace(uri) != nullptr;
}

// The start tags of the root and of <sheets>, the scope of a sheet element.
struct Scope {
    QByteArrayView root, sheets;
    QByteArray sheetsName;                        // qualified, as written
    qsizetype sheetsBegin = -1, sheetsClose = -1; // <sheets ...> and </sheets>
    bool sheetsSelfClosing = false;
};

Scope scopeOf(QByteArrayView xml)
{
    Scope scope;
    qsizetype pos = 0;
    XmlTag tag;
    if (!XmlText::nextTag(xml, pos, tag))
        return scope;
    scope.root = xml.sliced(tag.begin, tag.end - tag.begin);
    int depth = tag.selfClosing ? 0 : 1;
    while (depth > 0 && XmlText::nextTag(xml, pos, tag)) {
        if (depth == 1 && !tag.closing && tag.localName() == "sheets") {
            scope.sheets = xml.sliced(tag.begin, tag.end - tag.begin);
            scope.sheetsName = tag.name.toByteArray();
            scope.sheetsBegin = tag.begin;
            scope.sheetsSelfClosing = tag.selfClosing;
            if (!tag.selfClosing) {
                const qsizetype end = XmlText::elementEnd(xml, tag);
                if (end > 0)
                    scope.sheetsClose = xml.lastIndexOf('<', end - 1);
            }
            return scope;
        }
        if (!tag.selfClosing)
            depth += tag.closing ? -1 : 1;
    }
    return scope;
}

} // namespace

WorkbookXml::WorkbookXml(QByteArray xml) : m_xml(std::move(xml))
{
    qsizetype pos = 0;
    XmlTag root;
    if (!XmlText::nextTag(m_xml, pos, root) || root.closing || root.localName() != "workbook")
        return;
    const QByteArrayView rootText = QByteArrayView(m_xml).sliced(root.begin, root.end - root.begin);
    const std::optional<QByteArray> uri = XmlText::namespaceOf(root.prefix(), rootText);
    // A root in no namespace at all is read as the common vocabulary; one in
    // a foreign namespace is no workbook.
    m_vocabulary = uri ? Vocabulary::ofMainNamespace(*uri) : &Vocabulary::Transitional;
    XmlTag tag;
    int depth = 1;
    // Both come before the sheet list.
    while (depth > 0 && XmlText::nextTag(m_xml, pos, tag)) {
        const QByteArrayView text = QByteArrayView(m_xml).sliced(tag.begin, tag.end - tag.begin);
        if (depth == 1 && !tag.closing) {
            const QByteArrayView local = tag.localName();
            if (local == "workbookPr")
                m_date1904 = XmlText::isTrue(text, "date1904");
            else if (local == "workbookProtection")
                m_structureLocked = XmlText::isTrue(text, "lockStructure");
            else if (local == "sheets")
                break;
        }
        if (!tag.selfClosing)
            depth += tag.closing ? -1 : 1;
    }
}

std::vector<WorkbookXml::Found> WorkbookXml::scan() const
{
    std::vector<Found> found;
    const QByteArrayView xml(m_xml);
    const Scope scope = scopeOf(xml);
    if (scope.sheetsBegin < 0 || scope.sheetsSelfClosing)
        return found;
    qsizetype pos = scope.sheetsBegin + scope.sheets.size();
    XmlTag tag;
    while (XmlText::nextTag(xml, pos, tag) && tag.begin < scope.sheetsClose) {
        if (tag.closing || tag.localName() != "sheet")
            continue;
        const QByteArrayView text = xml.sliced(tag.begin, tag.end - tag.begin);
        Found f;
        f.begin = tag.begin;
        f.tagEnd = tag.end;
        f.end = tag.selfClosing ? tag.end : XmlText::elementEnd(xml, tag);
        if (f.end < 0)
            break;
        f.prefix = tag.prefix().toByteArray();
        f.sheet.relId =
            XmlText::attributeIn(text, {scope.sheets, scope.root}, isRelationshipsNamespace, "id")
                .value_or(QByteArray());
        f.sheet.name = QString::fromUtf8(XmlText::attribute(text, "name").value_or(QByteArray()));
        const QByteArray state = XmlText::attribute(text, "state").value_or(QByteArray());
        f.sheet.hidden = !state.isEmpty() && state != "visible";
        f.sheet.sheetId = XmlText::attribute(text, "sheetId").value_or("0").toInt();
        pos = f.end;
        found.push_back(std::move(f));
    }
    return found;
}

std::vector<WorkbookXml::Sheet> WorkbookXml::sheets() const
{
    std::vector<Sheet> sheets;
    for (const Found &f : scan())
        sheets.push_back(f.sheet);
    return sheets;
}

bool WorkbookXml::insertSheet(const QString &name, const QByteArray &relId, const QByteArray &after)
{
    const Scope scope = scopeOf(m_xml);
    if (scope.sheetsBegin < 0 || (!scope.sheetsSelfClosing && scope.sheetsClose < 0))
        return false;
    const std::vector<Found> found = scan();
    int sheetId = 0;
    qsizetype at = scope.sheetsClose;
    const qsizetype colon = scope.sheetsName.indexOf(':');
    QByteArray prefix = scope.sheetsName.first(colon + 1);
    for (const Found &f : found) {
        sheetId = std::max(sheetId, f.sheet.sheetId);
        prefix = f.prefix;
        if (f.sheet.relId == after)
            at = f.end;
    }
    const QByteArray uri = m_vocabulary->relationships;
    std::optional<QByteArray> relPrefix = XmlText::prefixOf(uri, scope.sheets, {scope.root});
    QByteArray declaration;
    if (!relPrefix || relPrefix->isEmpty()) {
        // Some writers declare it on each sheet element instead of the root.
        relPrefix = "r:";
        declaration = " xmlns:r=\"" + uri + "\"";
    }
    const QByteArray element = "<" + prefix + "sheet name=\"" + XmlText::escape(name) +
                               "\" sheetId=\"" + QByteArray::number(sheetId + 1) + "\"" +
                               declaration + " " + *relPrefix + "id=\"" + relId + "\"/>";
    if (scope.sheetsSelfClosing) {
        const QByteArray start =
            scope.sheets.first(scope.sheets.size() - 2).trimmed().toByteArray() + ">";
        m_xml.replace(scope.sheetsBegin, scope.sheets.size(),
                      start + element + "</" + scope.sheetsName + ">");
        return true;
    }
    m_xml.insert(at, element);
    return true;
}

void WorkbookXml::renumberSheets(const std::function<int(int)> &map)
{
    struct Edit {
        qsizetype begin, end;
        QByteArray text;
    };
    std::vector<Edit> edits;
    const QByteArrayView xml(m_xml);
    qsizetype pos = 0;
    XmlTag tag;
    while (XmlText::nextTag(xml, pos, tag)) {
        const QByteArrayView local = tag.localName();
        if (tag.closing || (local != "definedName" && local != "workbookView"))
            continue;
        QByteArray text = xml.sliced(tag.begin, tag.end - tag.begin).toByteArray();
        const char *const attributes[] = {"localSheetId", "activeTab", "firstSheet"};
        bool changed = false;
        for (const char *name : attributes) {
            const int index = XmlText::numberAttribute(text, name, -1);
            int to = index < 0 ? index : map(index);
            if (to == index)
                continue;
            if (to < 0 && local == "definedName") { // a name of a sheet that goes, with its value
                const qsizetype end = tag.selfClosing ? tag.end : XmlText::elementEnd(xml, tag);
                edits.push_back({tag.begin, end < 0 ? tag.end : end, {}});
                changed = false;
                break;
            }
            // The window's tab of a sheet that goes falls on the one before.
            if (to < 0)
                to = std::max(index - 1, 0);
            text = XmlText::setAttribute(text, name, QByteArray::number(to));
            changed = true;
        }
        if (changed)
            edits.push_back({tag.begin, tag.end, text});
    }
    // From the end, so that earlier offsets hold.
    std::sort(edits.begin(), edits.end(),
              [](const Edit &a, const Edit &b) { return a.begin > b.begin; });
    for (const Edit &e : edits)
        m_xml.replace(e.begin, e.end - e.begin, e.text);
}

int WorkbookXml::indexOf(const QByteArray &relId) const
{
    const std::vector<Found> found = scan();
    for (size_t i = 0; i < found.size(); ++i)
        if (found[i].sheet.relId == relId)
            return int(i);
    return -1;
}

bool WorkbookXml::moveSheetFirst(const QByteArray &relId)
{
    const int from = indexOf(relId);
    if (from < 0)
        return false;
    if (from == 0)
        return true;
    // Sheet indexes elsewhere in the part count in tab order.
    renumberSheets([from](int index) {
        return index == from ? 0 : index < from ? index + 1 : index;
    });
    const std::vector<Found> found = scan();
    const QByteArray element = m_xml.mid(found[from].begin, found[from].end - found[from].begin);
    m_xml.remove(found[from].begin, found[from].end - found[from].begin);
    m_xml.insert(found[0].begin, element);
    return true;
}

bool WorkbookXml::removeSheet(const QByteArray &relId)
{
    const int gone = indexOf(relId);
    if (gone < 0)
        return false;
    // Names of the sheet go with it.
    renumberSheets([gone](int index) {
        return index == gone ? -1 : index > gone ? index - 1 : index;
    });
    const std::vector<Found> found = scan();
    m_xml.remove(found[gone].begin, found[gone].end - found[gone].begin);
    return true;
}

void WorkbookXml::editSheet(const QByteArray &relId,
                            const std::function<QByteArray(const QByteArray &)> &edit)
{
    for (const Found &f : scan()) {
        if (f.sheet.relId != relId)
            continue;
        m_xml.replace(f.begin, f.tagEnd - f.begin, edit(m_xml.mid(f.begin, f.tagEnd - f.begin)));
        return;
    }
}

} // namespace quorvale::xlsx
