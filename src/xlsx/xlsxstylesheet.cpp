#include "xlsx/xlsxstylesheet.h"

#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxvocabulary.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace quorvale::xlsx {

const char *const StyleSheet::horizontalNames[] = {
    "general", "left", "center", "right", "fill", "justify", "centerContinuous", "distributed"};
const char *const StyleSheet::verticalNames[] = {"top", "center", "bottom", "justify",
                                                 "distributed"};

namespace {

constexpr const char *DateTimeCode = "yyyy-mm-dd hh:mm:ss";
constexpr int BuiltinDateFormat = 14;

[[noreturn]] void badStyles()
{
    throw Error(ErrorNumber::WorkbookError,
                       QStringLiteral("工作簿的样式部分（styles.xml）已损坏，无法写入"));
}

// Start tag of an element's text and the rest after it.
qsizetype startTagEnd(QByteArrayView element)
{
    qsizetype pos = 0;
    XmlTag t;
    return XmlText::nextTag(element, pos, t) ? t.end : -1;
}

// An entry's text with an empty element written short, so "<xf .../>" and
// "<xf ...></xf>" are found as the same entry.
QByteArray sameInFull(const QByteArray &item)
{
    const qsizetype split = startTagEnd(item);
    if (split < 2 || item.at(split - 2) == '/' || !item.endsWith('>'))
        return item;
    const qsizetype close = item.lastIndexOf("</");
    if (close != split)
        return item;
    return item.first(split - 1) + "/>";
}

} // namespace

size_t qHash(const StyleRequest &r, size_t seed) noexcept
{
    const quint64 packed = quint64(r.baseXf) | quint64(quint8(r.numFmt)) << 32 |
                           quint64(quint8(r.quotePrefix)) << 40 |
                           quint64(quint8(r.horizontal)) << 48 | quint64(quint8(r.vertical)) << 56;
    return ::qHash(packed, seed) ^ ::qHash(r.fontSize, seed) ^ size_t(quint8(r.border)) * 0x9E37u ^
           size_t(quint8(r.locked)) * 0x7F4A7C15u;
}

QByteArray StyleSheet::defaultXml(const Vocabulary &vocabulary)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
           "<styleSheet xmlns=\"" +
           QByteArray(vocabulary.main) +
           "\"><fonts count=\"1\"><font><sz val=\"11\"/><color theme=\"1\"/><name "
           "val=\"Calibri\"/><family val=\"2\"/><scheme val=\"minor\"/></font></fonts>"
           "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
           "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
           "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border>"
           "</borders><cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" "
           "borderId=\"0\"/></cellStyleXfs><cellXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" "
           "fillId=\"0\" borderId=\"0\" xfId=\"0\"/></cellXfs><cellStyles count=\"1\">"
           "<cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles><dxfs "
           "count=\"0\"/><tableStyles count=\"0\"/></styleSheet>";
}

StyleSheet::StyleSheet(QByteArray xml) : m_xml(std::move(xml))
{
    m_numFmts.localName = "numFmts";
    m_fonts.localName = "fonts";
    m_fills.localName = "fills";
    m_borders.localName = "borders";
    m_styleXfs.localName = "cellStyleXfs";
    m_xfs.localName = "cellXfs";
    m_cellStyles.localName = "cellStyles";
    qsizetype pos = 0;
    XmlTag root;
    if (!XmlText::nextTag(m_xml, pos, root) || root.localName() != "styleSheet" || root.closing)
        badStyles();
    m_prefix = root.prefix().toByteArray();
    if (root.selfClosing) {
        const QByteArray start = m_xml.mid(root.begin, root.end - root.begin - 2).trimmed() + ">";
        m_xml.replace(root.begin, root.end - root.begin,
                      start + "</" + root.name.toByteArray() + ">");
        pos = 0;
        XmlText::nextTag(m_xml, pos, root);
    }
    m_rootStartEnd = root.end;
    const qsizetype rootEnd = XmlText::elementEnd(m_xml, root);
    if (rootEnd < 0)
        badStyles();
    m_rootClose = m_xml.lastIndexOf('<', rootEnd - 1);
    XmlTag child;
    while (XmlText::nextTag(m_xml, pos, child)) {
        if (child.closing)
            break;
        const qsizetype end = XmlText::elementEnd(m_xml, child);
        if (end < 0)
            badStyles();
        m_children.emplace_back(child.localName().toByteArray(), child.begin);
        for (Collection *c : collections())
            if (child.localName() == c->localName)
                parseCollection(*c, child.begin, end);
        pos = end;
    }
    completeMinimalPart();
}

std::vector<StyleSheet::Collection *> StyleSheet::collections()
{
    return {&m_numFmts, &m_fonts, &m_fills, &m_borders, &m_styleXfs, &m_xfs, &m_cellStyles};
}

std::vector<const StyleSheet::Collection *> StyleSheet::collections() const
{
    return {&m_numFmts, &m_fonts, &m_fills, &m_borders, &m_styleXfs, &m_xfs, &m_cellStyles};
}

void StyleSheet::completeMinimalPart()
{
    // Formats that point at fonts or borders that are not there are damage,
    // not something to fill in.
    const bool hasFormats = !m_xfs.items.empty();
    if (m_fonts.items.empty()) {
        if (hasFormats)
            badStyles();
        addItem(m_fonts, ownFont(11));
    }
    if (m_fills.items.empty()) {
        for (const char *pattern : {"none", "gray125"})
            addItem(m_fills, "<" + tag("fill") + "><" + tag("patternFill") + " patternType=\"" +
                                 pattern + "\"/></" + tag("fill") + ">");
    }
    if (m_borders.items.empty()) {
        if (hasFormats)
            badStyles();
        borderFor(false);
    }
    if (m_styleXfs.items.empty()) {
        addItem(m_styleXfs,
                "<" + tag("xf") + " numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/>");
        if (m_cellStyles.items.empty())
            addItem(m_cellStyles,
                    "<" + tag("cellStyle") + " name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>");
    }
    if (!hasFormats)
        addItem(m_xfs, "<" + tag("xf") +
                           " numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/>");
}

void StyleSheet::parseCollection(Collection &c, qsizetype begin, qsizetype end)
{
    QByteArrayView text(m_xml);
    qsizetype pos = begin;
    XmlTag start;
    XmlText::nextTag(text, pos, start);
    c.begin = begin;
    c.startEnd = start.end;
    c.end = end;
    if (start.selfClosing)
        return;
    XmlTag item;
    while (XmlText::nextTag(text, pos, item) && !item.closing) {
        const qsizetype itemEnd = XmlText::elementEnd(text, item);
        if (itemEnd < 0 || itemEnd > end)
            badStyles();
        QByteArray itemText = m_xml.mid(item.begin, itemEnd - item.begin);
        c.byText.insert(sameInFull(itemText), int(c.items.size()));
        c.items.push_back(std::move(itemText));
        pos = itemEnd;
    }
    c.closeBegin = item.closing ? item.begin : -1;
    c.originalCount = c.items.size();
}

int StyleSheet::addItem(Collection &c, const QByteArray &text)
{
    const QByteArray key = sameInFull(text);
    const auto it = c.byText.constFind(key);
    if (it != c.byText.cend())
        return *it;
    const int index = int(c.items.size());
    c.items.push_back(text);
    c.byText.insert(key, index);
    return index;
}

bool StyleSheet::isModified() const
{
    for (const Collection *c : collections())
        if (c->items.size() != c->originalCount)
            return true;
    return false;
}

// The font of a new workbook, in the given size. Its scheme makes it follow
// the workbook's theme, as the body font of Excel's own new workbooks does.
QByteArray StyleSheet::ownFont(double size) const
{
    return "<" + tag("font") + "><" + tag("sz") + " val=\"" + QByteArray::number(size) + "\"/><" +
           tag("color") + " theme=\"1\"/><" + tag("name") + " val=\"Calibri\"/><" + tag("family") +
           " val=\"2\"/><" + tag("scheme") + " val=\"minor\"/></" + tag("font") + ">";
}

// A font like fontId (-1: the export's own) in another size.
int StyleSheet::fontWithSize(int fontId, double size)
{
    if (fontId >= 0 && size_t(fontId) >= m_fonts.items.size())
        fontId = 0;
    quint64 key;
    std::memcpy(&key, &size, sizeof key);
    key ^= quint64(fontId + 1) * 0x9E3779B97F4A7C15ull;
    const auto cached = m_fontSizes.constFind(key);
    if (cached != m_fontSizes.cend())
        return *cached;
    QByteArray result;
    if (fontId < 0) {
        result = ownFont(size);
    } else {
        const QByteArray &font = m_fonts.items[size_t(fontId)];
        const QByteArray sz = "<" + tag("sz") + " val=\"" + QByteArray::number(size) + "\"/>";
        const qsizetype startEnd = startTagEnd(font);
        if (font.at(startEnd - 2) == '/') {
            result = font.first(startEnd - 2).trimmed() + ">" + sz + "</" + tag("font") + ">";
        } else {
            qsizetype pos = startEnd;
            XmlTag t;
            bool found = false;
            while (XmlText::nextTag(font, pos, t)) {
                if (!t.closing && t.localName() == "sz") {
                    const QByteArray tagText = font.mid(t.begin, t.end - t.begin);
                    result = font.first(t.begin) +
                             XmlText::setAttribute(tagText, "val", QByteArray::number(size)) +
                             font.mid(t.end);
                    found = true;
                    break;
                }
            }
            if (!found)
                result = font.first(startEnd) + sz + font.mid(startEnd);
        }
    }
    const int id = addItem(m_fonts, result);
    m_fontSizes.insert(key, id);
    return id;
}

int StyleSheet::borderFor(bool thin)
{
    const int key = thin ? 1 : 0;
    const auto cached = m_borderIds.constFind(key);
    if (cached != m_borderIds.cend())
        return *cached;
    QByteArray text = "<" + tag("border") + ">";
    for (const char *side : {"left", "right", "top", "bottom"}) {
        if (thin)
            text += "<" + tag(side) + " style=\"thin\"><" + tag("color") + " indexed=\"64\"/></" +
                    tag(side) + ">";
        else
            text += "<" + tag(side) + "/>";
    }
    text += "<" + tag("diagonal") + "/></" + tag("border") + ">";
    const int id = addItem(m_borders, text);
    m_borderIds.insert(key, id);
    return id;
}

int StyleSheet::dateTimeFormat()
{
    if (m_dateTimeFormat >= 0)
        return m_dateTimeFormat;
    int maxId = 163; // ids below 164 are Excel's built-in formats
    for (const QByteArray &item : m_numFmts.items) {
        const int id = XmlText::numberAttribute(item, "numFmtId", -1);
        if (XmlText::attribute(item, "formatCode") == QByteArray(DateTimeCode))
            return m_dateTimeFormat = id;
        maxId = std::max(maxId, id);
    }
    m_dateTimeFormat = maxId + 1;
    addItem(m_numFmts, "<" + tag("numFmt") + " numFmtId=\"" + QByteArray::number(maxId + 1) +
                           "\" formatCode=\"" + DateTimeCode + "\"/>");
    return m_dateTimeFormat;
}

// LibreOffice writes "General" as a custom format of its own (often 164).
bool StyleSheet::isGeneral(int numFmtId) const
{
    if (numFmtId == 0)
        return true;
    if (numFmtId < 164)
        return false;
    for (const QByteArray &item : m_numFmts.items)
        if (XmlText::numberAttribute(item, "numFmtId", -1) == numFmtId)
            return XmlText::attribute(item, "formatCode")
                       .value_or(QByteArray())
                       .compare("General", Qt::CaseInsensitive) == 0;
    return false;
}

// The first child element of an xf's body with the local name: [begin, end).
std::pair<qsizetype, qsizetype> StyleSheet::childElement(QByteArrayView body, QByteArrayView local)
{
    qsizetype pos = 0;
    XmlTag t;
    while (XmlText::nextTag(body, pos, t))
        if (!t.closing && t.localName() == local)
            return {t.begin, XmlText::elementEnd(body, t)};
    return {-1, -1};
}

bool StyleSheet::isLocked(quint32 xf) const
{
    if (xf >= m_xfs.items.size())
        return true;
    // Asked once per cell of a protected sheet; formats never change in place.
    if (m_locked.size() < m_xfs.items.size())
        m_locked.resize(m_xfs.items.size(), -1);
    if (m_locked[xf] < 0) {
        const QByteArray &item = m_xfs.items[xf];
        const auto [begin, end] = childElement(item, "protection");
        const auto value =
            begin < 0 ? std::nullopt
                      : XmlText::rawAttribute(QByteArrayView(item).sliced(begin, end - begin), "locked");
        m_locked[xf] = !value || (*value != "0" && *value != "false") ? 1 : 0;
    }
    return m_locked[xf] == 1;
}

quint32 StyleSheet::resolve(const StyleRequest &request)
{
    StyleRequest r = request;
    const bool own = r.baseXf == StyleRequest::OwnBase;
    if (!own && r.baseXf >= m_xfs.items.size())
        r.baseXf = 0;
    if (!own && r.keepsBase())
        return r.baseXf;
    const auto cached = m_resolved.constFind(r);
    if (cached != m_resolved.cend())
        return *cached;

    QByteArray start, body;
    if (own) {
        start = "<" + tag("xf") + " numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\">";
        body = "</" + tag("xf") + ">";
    } else {
        const QByteArray &base = m_xfs.items[r.baseXf];
        const qsizetype split = startTagEnd(base);
        const bool selfClosing = base.at(split - 2) == '/';
        start = selfClosing ? base.first(split - 2).trimmed() + ">" : base.first(split);
        body = selfClosing ? "</" + tag("xf") + ">" : base.mid(split);
    }

    if (r.numFmt && isGeneral(XmlText::numberAttribute(start, "numFmtId", 0))) {
        const int id = r.numFmt == 1 ? BuiltinDateFormat : dateTimeFormat();
        start = XmlText::setAttribute(start, "numFmtId", QByteArray::number(id));
        start = XmlText::setAttribute(start, "applyNumberFormat", "1");
    }
    if (r.fontSize > 0) {
        const int font = fontWithSize(own ? -1 : XmlText::numberAttribute(start, "fontId", 0), r.fontSize);
        start = XmlText::setAttribute(start, "fontId", QByteArray::number(font));
        start = XmlText::setAttribute(start, "applyFont", "1");
    } else if (own) {
        start = XmlText::setAttribute(start, "fontId",
                                      QByteArray::number(addItem(m_fonts, ownFont(11))));
    }
    if (r.border >= 0) {
        const int border = borderFor(r.border == 1);
        start = XmlText::setAttribute(start, "borderId", QByteArray::number(border));
        start = XmlText::setAttribute(start, "applyBorder", "1");
    } else if (own) {
        start = XmlText::setAttribute(start, "borderId", QByteArray::number(borderFor(false)));
    }
    if (r.quotePrefix == 1)
        start = XmlText::setAttribute(start, "quotePrefix", "1");
    else if (r.quotePrefix == 0)
        start = XmlText::removeAttribute(start, "quotePrefix");
    if (r.horizontal >= 0 || r.vertical >= 0) {
        const auto [alignBegin, alignEnd] = childElement(body, "alignment");
        QByteArray align = alignBegin >= 0 ? body.mid(alignBegin, alignEnd - alignBegin)
                                           : "<" + tag("alignment") + "/>";
        if (r.horizontal == 0)
            align = XmlText::removeAttribute(align, "horizontal");
        else if (r.horizontal > 0)
            align = XmlText::setAttribute(align, "horizontal", horizontalNames[r.horizontal]);
        if (r.vertical >= 0)
            align = XmlText::setAttribute(align, "vertical", verticalNames[r.vertical]);
        if (alignBegin >= 0)
            body = body.first(alignBegin) + align + body.mid(alignEnd);
        else
            body = align + body;
        start = XmlText::setAttribute(start, "applyAlignment", "1");
    }
    if (r.locked >= 0) {
        // The schema puts protection after alignment, before any extension.
        const auto [protBegin, protEnd] = childElement(body, "protection");
        if (protBegin >= 0) {
            const qsizetype startEnd = body.indexOf('>', protBegin) + 1;
            const QByteArray startTag = body.mid(protBegin, startEnd - protBegin);
            body.replace(protBegin, startEnd - protBegin,
                         r.locked ? XmlText::removeAttribute(startTag, "locked")
                                  : XmlText::setAttribute(startTag, "locked", "0"));
        } else if (!r.locked) {
            const qsizetype at = childElement(body, "alignment").second;
            body.insert(at < 0 ? 0 : at, "<" + tag("protection") + " locked=\"0\"/>");
        }
        start = XmlText::setAttribute(start, "applyProtection", "1");
    }
    const quint32 id = quint32(addItem(m_xfs, start + body));
    m_resolved.insert(r, id);
    return id;
}

qsizetype StyleSheet::insertionPoint(const Collection &c) const
{
    // The schema's order of a style sheet's children.
    static const char *const order[] = {"numFmts",  "fonts",       "fills",   "borders",
                                        "cellStyleXfs", "cellXfs", "cellStyles", "dxfs",
                                        "tableStyles",  "colors",  "extLst"};
    auto rank = [](QByteArrayView name) {
        for (int i = 0; i < int(std::size(order)); ++i)
            if (name == order[i])
                return i;
        return -1;
    };
    const int mine = rank(c.localName);
    qsizetype at = m_rootClose;
    for (const auto &[name, begin] : m_children)
        if (rank(name) > mine)
            at = std::min(at, begin);
    return at;
}

QByteArray StyleSheet::collectionXml(const Collection &c) const
{
    QByteArray out;
    const QByteArray name = tag(c.localName.constData());
    if (c.begin < 0) {
        out = "<" + name + " count=\"" + QByteArray::number(qsizetype(c.items.size())) + "\">";
    } else {
        QByteArray start = m_xml.mid(c.begin, c.startEnd - c.begin);
        if (c.closeBegin < 0)
            start = start.first(start.size() - 2).trimmed() + ">";
        out = XmlText::setAttribute(start, "count", QByteArray::number(qsizetype(c.items.size())));
        if (c.closeBegin >= 0)
            out += m_xml.mid(c.startEnd, c.closeBegin - c.startEnd);
    }
    for (size_t i = c.originalCount; i < c.items.size(); ++i)
        out += c.items[i];
    out += "</" + name + ">";
    return out;
}

QByteArray StyleSheet::toXml() const
{
    if (!isModified())
        return m_xml;
    struct Splice {
        qsizetype begin, end;
        QByteArray text;
    };
    std::vector<Splice> splices;
    for (const Collection *c : collections()) {
        if (c->items.size() == c->originalCount)
            continue;
        if (c->begin < 0) {
            const qsizetype at = insertionPoint(*c);
            splices.push_back({at, at, collectionXml(*c)});
        } else {
            splices.push_back({c->begin, c->end, collectionXml(*c)});
        }
    }
    // Collections inserted at one place keep the schema's order.
    std::stable_sort(splices.begin(), splices.end(),
                     [](const Splice &a, const Splice &b) { return a.begin < b.begin; });
    QByteArray out;
    qsizetype pos = 0;
    for (const Splice &s : splices) {
        out += m_xml.mid(pos, s.begin - pos);
        out += s.text;
        pos = s.end;
    }
    out += m_xml.mid(pos);
    return out;
}

} // namespace quorvale::xlsx
