#include "xlsx/xlsxxmltext.h"

#include <cstring>

namespace quorvale::xlsx {

QByteArrayView XmlTag::localName() const
{
    const qsizetype colon = name.indexOf(':');
    return colon < 0 ? name : name.sliced(colon + 1);
}

QByteArrayView XmlTag::prefix() const
{
    const qsizetype colon = name.indexOf(':');
    return colon < 0 ? QByteArrayView() : name.first(colon + 1);
}

static bool isNameEnd(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '/' || c == '>';
}

bool XmlText::nextTag(QByteArrayView text, qsizetype &pos, XmlTag &tag)
{
    const char *data = text.data();
    const qsizetype size = text.size();
    while (pos < size) {
        const void *lt = std::memchr(data + pos, '<', size_t(size - pos));
        if (!lt)
            break;
        qsizetype p = static_cast<const char *>(lt) - data;
        if (p + 1 >= size)
            break;
        const char c = data[p + 1];
        if (c == '!' || c == '?') {
            QByteArrayView rest = text.sliced(p);
            qsizetype close;
            if (rest.startsWith("<!--"))
                close = text.indexOf("-->", p + 4), close = close < 0 ? -1 : close + 3;
            else if (rest.startsWith("<![CDATA["))
                close = text.indexOf("]]>", p + 9), close = close < 0 ? -1 : close + 3;
            else
                close = text.indexOf('>', p), close = close < 0 ? -1 : close + 1;
            if (close < 0)
                break;
            pos = close;
            continue;
        }
        tag.begin = p;
        tag.closing = c == '/';
        qsizetype n = p + (tag.closing ? 2 : 1);
        const qsizetype nameStart = n;
        while (n < size && !isNameEnd(data[n]))
            ++n;
        tag.name = text.sliced(nameStart, n - nameStart);
        char quote = 0;
        while (n < size) {
            const char d = data[n];
            if (quote) {
                if (d == quote)
                    quote = 0;
            } else if (d == '"' || d == '\'') {
                quote = d;
            } else if (d == '>') {
                break;
            }
            ++n;
        }
        if (n >= size)
            break;
        tag.selfClosing = !tag.closing && data[n - 1] == '/';
        tag.end = n + 1;
        pos = tag.end;
        return true;
    }
    pos = size;
    return false;
}

qsizetype XmlText::elementEnd(QByteArrayView text, const XmlTag &start)
{
    if (start.selfClosing)
        return start.end;
    qsizetype pos = start.end;
    int depth = 1;
    XmlTag tag;
    while (nextTag(text, pos, tag)) {
        if (tag.selfClosing)
            continue;
        depth += tag.closing ? -1 : 1;
        if (depth == 0)
            return tag.end;
    }
    return -1;
}

// Finds ` name="` in a start tag; returns the position of the opening quote.
static qsizetype findAttribute(QByteArrayView tag, QByteArrayView name, char &quote)
{
    qsizetype pos = 0;
    while ((pos = tag.indexOf(name, pos)) >= 0) {
        const bool boundary = pos > 0 && (tag[pos - 1] == ' ' || tag[pos - 1] == '\t' ||
                                          tag[pos - 1] == '\n' || tag[pos - 1] == '\r');
        qsizetype q = pos + name.size();
        while (q < tag.size() && (tag[q] == ' ' || tag[q] == '\t' || tag[q] == '\n' || tag[q] == '\r'))
            ++q;
        if (boundary && q < tag.size() && tag[q] == '=') {
            ++q;
            while (q < tag.size() && (tag[q] == ' ' || tag[q] == '\t' || tag[q] == '\n' || tag[q] == '\r'))
                ++q;
            if (q < tag.size() && (tag[q] == '"' || tag[q] == '\'')) {
                // Must be outside any other attribute's value: count quotes before.
                int dq = 0, sq = 0;
                for (qsizetype i = 0; i < pos; ++i) {
                    if (tag[i] == '"' && sq % 2 == 0)
                        ++dq;
                    else if (tag[i] == '\'' && dq % 2 == 0)
                        ++sq;
                }
                if (dq % 2 == 0 && sq % 2 == 0) {
                    quote = tag[q];
                    return q;
                }
            }
        }
        pos += name.size();
    }
    return -1;
}

std::optional<QByteArrayView> XmlText::rawAttribute(QByteArrayView tagText, QByteArrayView name)
{
    char quote = '"';
    const qsizetype q = findAttribute(tagText, name, quote);
    if (q < 0)
        return std::nullopt;
    const qsizetype close = tagText.indexOf(quote, q + 1);
    if (close < 0)
        return std::nullopt;
    return tagText.sliced(q + 1, close - q - 1);
}

int XmlText::numberAttribute(QByteArrayView tagText, QByteArrayView name, int fallback)
{
    const auto value = rawAttribute(tagText, name);
    if (!value || value->isEmpty() || value->size() > 9)
        return fallback;
    int n = 0;
    for (char c : *value) {
        if (c < '0' || c > '9')
            return fallback;
        n = n * 10 + (c - '0');
    }
    return n;
}

bool XmlText::isTrue(QByteArrayView tagText, QByteArrayView name)
{
    const auto value = rawAttribute(tagText, name);
    return value && (*value == "1" || *value == "true");
}

std::optional<QByteArray> XmlText::attribute(QByteArrayView tagText, QByteArrayView name)
{
    const std::optional<QByteArrayView> raw = rawAttribute(tagText, name);
    if (!raw)
        return std::nullopt;
    if (!raw->contains('&'))
        return raw->toByteArray();
    return unescape(*raw).toUtf8();
}

QByteArray XmlText::setAttribute(QByteArrayView tagText, QByteArrayView name, QByteArrayView value)
{
    QByteArray escaped = escape(QString::fromUtf8(value));
    char quote = '"';
    const qsizetype q = findAttribute(tagText, name, quote);
    QByteArray out;
    if (q >= 0) {
        const qsizetype close = tagText.indexOf(quote, q + 1);
        out.reserve(tagText.size() + escaped.size());
        out.append(tagText.first(q + 1)).append(escaped).append(tagText.sliced(close));
        return out;
    }
    qsizetype insertAt = tagText.size() - 1; // before '>'
    if (insertAt > 0 && tagText[insertAt - 1] == '/')
        --insertAt;
    while (insertAt > 0 && (tagText[insertAt - 1] == ' '))
        --insertAt;
    out.append(tagText.first(insertAt)).append(' ').append(name).append("=\"").append(escaped)
        .append('"').append(tagText.sliced(insertAt));
    return out;
}

QByteArray XmlText::removeAttribute(QByteArrayView tagText, QByteArrayView name)
{
    char quote = '"';
    const qsizetype q = findAttribute(tagText, name, quote);
    if (q < 0)
        return tagText.toByteArray();
    qsizetype start = tagText.lastIndexOf(name, q);
    while (start > 0 && (tagText[start - 1] == ' ' || tagText[start - 1] == '\t' ||
                         tagText[start - 1] == '\n' || tagText[start - 1] == '\r'))
        --start;
    const qsizetype close = tagText.indexOf(quote, q + 1);
    QByteArray out = tagText.first(start).toByteArray();
    out.append(tagText.sliced(close + 1));
    return out;
}

static bool isXmlSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

void XmlText::forEachAttribute(
    QByteArrayView tag, const std::function<void(QByteArrayView, QByteArrayView)> &visit)
{
    qsizetype i = 1;
    while (i < tag.size() && !isNameEnd(tag[i]))
        ++i;
    for (;;) {
        while (i < tag.size() && isXmlSpace(tag[i]))
            ++i;
        const qsizetype nameStart = i;
        while (i < tag.size() && tag[i] != '=' && !isXmlSpace(tag[i]) && tag[i] != '/' &&
               tag[i] != '>')
            ++i;
        if (i == nameStart)
            return;
        const QByteArrayView name = tag.sliced(nameStart, i - nameStart);
        while (i < tag.size() && isXmlSpace(tag[i]))
            ++i;
        if (i >= tag.size() || tag[i] != '=')
            return;
        ++i;
        while (i < tag.size() && isXmlSpace(tag[i]))
            ++i;
        if (i >= tag.size() || (tag[i] != '"' && tag[i] != '\''))
            return;
        const qsizetype close = tag.indexOf(tag[i], i + 1);
        if (close < 0)
            return;
        visit(name, tag.sliced(i + 1, close - i - 1));
        i = close + 1;
    }
}

std::optional<QByteArray> XmlText::namespaceOf(QByteArrayView prefix, QByteArrayView tagText,
                                               std::initializer_list<QByteArrayView> scope)
{
    const QByteArray declaration =
        prefix.isEmpty() ? QByteArray("xmlns")
                         : "xmlns:" + prefix.first(prefix.size() - 1).toByteArray();
    std::optional<QByteArray> uri;
    auto find = [&](QByteArrayView tag) {
        if (!uri)
            uri = attribute(tag, declaration);
    };
    find(tagText);
    for (QByteArrayView tag : scope)
        find(tag);
    return uri;
}

std::optional<QByteArray> XmlText::prefixOf(QByteArrayView uri, QByteArrayView tagText,
                                            std::initializer_list<QByteArrayView> scope)
{
    std::optional<QByteArray> prefix;
    auto find = [&](QByteArrayView tag) {
        forEachAttribute(tag, [&](QByteArrayView name, QByteArrayView value) {
            if (prefix || value != uri)
                return;
            if (name == "xmlns")
                prefix = QByteArray();
            else if (name.startsWith("xmlns:"))
                prefix = name.sliced(6).toByteArray() + ':';
        });
    };
    find(tagText);
    for (QByteArrayView tag : scope)
        find(tag);
    return prefix;
}

std::optional<QByteArray> XmlText::attributeIn(QByteArrayView tagText,
                                               std::initializer_list<QByteArrayView> scope,
                                               const std::function<bool(QByteArrayView)> &accepts,
                                               QByteArrayView localName)
{
    std::optional<QByteArray> found;
    forEachAttribute(tagText, [&](QByteArrayView name, QByteArrayView value) {
        const qsizetype colon = name.indexOf(':');
        if (found || colon < 0 || name.sliced(colon + 1) != localName ||
            name.first(colon) == "xmlns")
            return;
        // Declarations on the tag itself are found by looking at it first.
        const std::optional<QByteArray> uri =
            namespaceOf(name.first(colon + 1), tagText, scope);
        if (uri && accepts(*uri))
            found = value.contains('&') ? unescape(value).toUtf8() : value.toByteArray();
    });
    return found;
}

QByteArray XmlText::escape(const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    qsizetype extra = 0;
    for (char c : utf8)
        if (c == '&' || c == '<' || c == '>' || c == '"')
            extra += 5;
    if (!extra)
        return utf8;
    QByteArray out;
    out.reserve(utf8.size() + extra);
    for (char c : utf8) {
        switch (c) {
        case '&': out.append("&amp;"); break;
        case '<': out.append("&lt;"); break;
        case '>': out.append("&gt;"); break;
        case '"': out.append("&quot;"); break;
        default: out.append(c);
        }
    }
    return out;
}

QString XmlText::unescape(QByteArrayView text)
{
    QByteArray out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '&') {
            out.append(text[i]);
            continue;
        }
        const qsizetype semi = text.indexOf(';', i);
        if (semi < 0) {
            out.append(text.sliced(i));
            break;
        }
        QByteArrayView entity = text.sliced(i + 1, semi - i - 1);
        if (entity == "amp")
            out.append('&');
        else if (entity == "lt")
            out.append('<');
        else if (entity == "gt")
            out.append('>');
        else if (entity == "quot")
            out.append('"');
        else if (entity == "apos")
            out.append('\'');
        else if (entity.startsWith('#')) {
            bool ok = false;
            const uint code = entity.startsWith("#x") ? entity.sliced(2).toUInt(&ok, 16)
                                                      : entity.sliced(1).toUInt(&ok, 10);
            if (ok) {
                const char32_t ch = char32_t(code);
                out.append(QString::fromUcs4(&ch, 1).toUtf8());
            }
        } else {
            out.append(text.sliced(i, semi - i + 1));
        }
        i = semi;
    }
    return QString::fromUtf8(out);
}

bool XmlText::parseCellRef(QByteArrayView ref, int &row, int &col)
{
    qsizetype i = 0;
    col = 0;
    row = 0;
    while (i < ref.size() && ref[i] >= 'A' && ref[i] <= 'Z' && i < 3)
        col = col * 26 + (ref[i++] - 'A' + 1);
    if (i == 0 || i == ref.size())
        return false;
    for (; i < ref.size(); ++i) {
        if (ref[i] < '0' || ref[i] > '9' || row > 10000000)
            return false;
        row = row * 10 + (ref[i] - '0');
    }
    return row > 0 && col > 0;
}

QByteArray XmlText::columnName(int col)
{
    char buf[4];
    int n = 0;
    while (col > 0) {
        const int rem = (col - 1) % 26;
        buf[n++] = char('A' + rem);
        col = (col - 1) / 26;
    }
    QByteArray out;
    while (n > 0)
        out.append(buf[--n]);
    return out;
}

QByteArray XmlText::cellRef(int row, int col)
{
    return columnName(col) + QByteArray::number(row);
}

} // namespace quorvale::xlsx
