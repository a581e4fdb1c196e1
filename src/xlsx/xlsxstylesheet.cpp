#include "xlsx/xlsxstylesheet.h"

#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxxmltext.h"

#include <cstring>

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

int intAttribute(QByteArrayView tagText, const char *name, int fallback = 0)
{
    const auto value = XmlText::attribute(tagText, name);
    bool ok = false;
    const int n = value ? value->toInt(&ok) : 0;
    return ok ? n : fallback;
}

// Start tag of an element's text and the rest after it.
qsizetype startTagEnd(QByteArrayView element)
{
    qsizetype pos = 0;
    XmlTag t;
    return XmlText::nextTag(element, pos, t) ? t.end : -1;
}

} // namespace

size_t qHash(const StyleRequest &r, size_t seed) noexcept
{
    const quint64 packed = quint64(r.baseXf) | quint64(quint8(r.numFmt)) << 32 |
                           quint64(quint8(r.quotePrefix)) << 40 |
                           quint64(quint8(r.horizontal)) << 48 | quint64(quint8(r.vertical)) << 56;
    return ::qHash(packed, seed) ^ ::qHash(r.fontSize, seed) ^ size_t(quint8(r.border)) * 0x9E37u;
}

QByteArray StyleSheet::defaultXml()
{
    return QByteArrayLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
        "<fonts count=\"1\"><font><sz val=\"11\"/><color theme=\"1\"/><name val=\"Calibri\"/>"
        "<family val=\"2\"/><scheme val=\"minor\"/></font></fonts>"
        "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
        "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
        "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
        "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/>"
        "</cellStyleXfs>"
        "<cellXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" "
        "xfId=\"0\"/></cellXfs>"
        "<cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>"
        "</cellStyles><dxfs count=\"0\"/><tableStyles count=\"0\"/></styleSheet>");
}

StyleSheet::StyleSheet(QByteArray xml) : m_xml(std::move(xml))
{
    m_numFmts.localName = "numFmts";
    m_fonts.localName = "fonts";
    m_borders.localName = "borders";
    m_xfs.localName = "cellXfs";
    qsizetype pos = 0;
    XmlTag root;
    if (!XmlText::nextTag(m_xml, pos, root) || root.localName() != "styleSheet" ||
        root.selfClosing)
        badStyles();
    m_prefix = root.prefix().toByteArray();
    m_rootStartEnd = root.end;
    XmlTag child;
    while (XmlText::nextTag(m_xml, pos, child)) {
        if (child.closing)
            break;
        const qsizetype end = XmlText::elementEnd(m_xml, child);
        if (end < 0)
            badStyles();
        for (Collection *c : {&m_numFmts, &m_fonts, &m_borders, &m_xfs})
            if (child.localName() == c->localName)
                parseCollection(*c, child.begin, end);
        pos = end;
    }
    if (m_fonts.items.empty() || m_borders.items.empty() || m_xfs.items.empty())
        badStyles();
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
        c.byText.insert(itemText, int(c.items.size()));
        c.items.push_back(std::move(itemText));
        pos = itemEnd;
    }
    c.closeBegin = item.closing ? item.begin : -1;
    c.originalCount = c.items.size();
}

int StyleSheet::addItem(Collection &c, const QByteArray &text)
{
    const auto it = c.byText.constFind(text);
    if (it != c.byText.cend())
        return *it;
    const int index = int(c.items.size());
    c.items.push_back(text);
    c.byText.insert(text, index);
    return index;
}

bool StyleSheet::isModified() const
{
    for (const Collection *c : {&m_numFmts, &m_fonts, &m_borders, &m_xfs})
        if (c->items.size() != c->originalCount)
            return true;
    return false;
}

int StyleSheet::fontWithSize(int fontId, double size)
{
    if (fontId < 0 || size_t(fontId) >= m_fonts.items.size())
        fontId = 0;
    quint64 key;
    std::memcpy(&key, &size, sizeof key);
    key ^= quint64(fontId) * 0x9E3779B97F4A7C15ull;
    const auto cached = m_fontSizes.constFind(key);
    if (cached != m_fontSizes.cend())
        return *cached;
    const QByteArray &font = m_fonts.items[size_t(fontId)];
    const QByteArray sz = "<" + tag("sz") + " val=\"" + QByteArray::number(size) + "\"/>";
    QByteArray result;
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
    const int id = addItem(m_fonts, result);
    m_fontSizes.insert(key, id);
    return id;
}

int StyleSheet::borderFor(int borderId, bool thin)
{
    const int key = thin ? 1 : 0;
    const auto cached = m_thinBorders.constFind(key);
    if (cached != m_thinBorders.cend())
        return *cached;
    Q_UNUSED(borderId);
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
    m_thinBorders.insert(key, id);
    return id;
}

int StyleSheet::dateTimeFormat()
{
    if (m_dateTimeFormat >= 0)
        return m_dateTimeFormat;
    int maxId = 163;
    for (const QByteArray &item : m_numFmts.items) {
        const int id = intAttribute(item, "numFmtId", -1);
        if (XmlText::attribute(item, "formatCode") == QByteArray(DateTimeCode))
            return m_dateTimeFormat = id;
        maxId = std::max(maxId, id);
    }
    m_dateTimeFormat = maxId + 1;
    addItem(m_numFmts, "<" + tag("numFmt") + " numFmtId=\"" + QByteArray::number(maxId + 1) +
                           "\" formatCode=\"" + DateTimeCode + "\"/>");
    return m_dateTimeFormat;
}

quint32 StyleSheet::resolve(const StyleRequest &request)
{
    StyleRequest r = request;
    if (r.baseXf >= m_xfs.items.size())
        r.baseXf = 0;
    if (r.keepsBase())
        return r.baseXf;
    const auto cached = m_resolved.constFind(r);
    if (cached != m_resolved.cend())
        return *cached;

    const QByteArray &base = m_xfs.items[r.baseXf];
    const qsizetype split = startTagEnd(base);
    const bool selfClosing = base.at(split - 2) == '/';
    QByteArray start = selfClosing ? base.first(split - 2).trimmed() + ">" : base.first(split);
    QByteArray body = selfClosing ? QByteArray() : base.mid(split);
    if (selfClosing)
        body = "</" + tag("xf") + ">";

    if (r.numFmt && intAttribute(start, "numFmtId") == 0) {
        const int id = r.numFmt == 1 ? BuiltinDateFormat : dateTimeFormat();
        start = XmlText::setAttribute(start, "numFmtId", QByteArray::number(id));
        start = XmlText::setAttribute(start, "applyNumberFormat", "1");
    }
    if (r.fontSize > 0) {
        const int font = fontWithSize(intAttribute(start, "fontId"), r.fontSize);
        start = XmlText::setAttribute(start, "fontId", QByteArray::number(font));
        start = XmlText::setAttribute(start, "applyFont", "1");
    }
    if (r.border >= 0) {
        const int border = borderFor(intAttribute(start, "borderId"), r.border == 1);
        start = XmlText::setAttribute(start, "borderId", QByteArray::number(border));
        start = XmlText::setAttribute(start, "applyBorder", "1");
    }
    if (r.quotePrefix == 1)
        start = XmlText::setAttribute(start, "quotePrefix", "1");
    else if (r.quotePrefix == 0)
        start = XmlText::removeAttribute(start, "quotePrefix");
    if (r.horizontal >= 0 || r.vertical >= 0) {
        qsizetype pos = 0;
        XmlTag t;
        qsizetype alignBegin = -1, alignEnd = -1;
        while (XmlText::nextTag(body, pos, t))
            if (!t.closing && t.localName() == "alignment") {
                alignBegin = t.begin;
                alignEnd = XmlText::elementEnd(body, t);
                break;
            }
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
    const quint32 id = quint32(addItem(m_xfs, start + body));
    m_resolved.insert(r, id);
    return id;
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
    for (const Collection *c : {&m_numFmts, &m_fonts, &m_borders, &m_xfs}) {
        if (c->items.size() == c->originalCount)
            continue;
        if (c->begin < 0) // numFmts is the first child of the style sheet
            splices.push_back({m_rootStartEnd, m_rootStartEnd, collectionXml(*c)});
        else
            splices.push_back({c->begin, c->end, collectionXml(*c)});
    }
    std::sort(splices.begin(), splices.end(),
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
