#include "platform/xlsxsharedstrings.h"

#include "platform/xlsxbytesink.h"
#include "platform/xlsxxmltext.h"

namespace quorvale::xlsx {

SharedStrings::SharedStrings(QByteArray existingXml) : m_xml(std::move(existingXml))
{
    qsizetype pos = 0;
    XmlTag root;
    if (!XmlText::nextTag(m_xml, pos, root) || root.localName() != "sst")
        return;
    m_prefix = root.prefix().toByteArray();
    m_rootBegin = root.begin;
    m_rootStartEnd = root.end;
    if (root.selfClosing)
        return;
    m_closeBegin = m_xml.lastIndexOf("</" + m_prefix + "sst");
    // Items are counted, not parsed: only the count matters for new indexes.
    const QByteArray open = "<" + m_prefix + "si";
    for (qsizetype p = m_xml.indexOf(open, m_rootStartEnd); p >= 0 && p < m_closeBegin;
         p = m_xml.indexOf(open, p + open.size())) {
        const char next = m_xml.at(p + open.size());
        if (next == '>' || next == ' ' || next == '/')
            ++m_existing;
    }
}

quint32 SharedStrings::add(const QString &text)
{
    const auto it = m_index.constFind(text);
    if (it != m_index.cend())
        return *it;
    const quint32 index = m_existing + quint32(m_added.size());
    m_added.push_back(text);
    m_index.insert(text, index);
    return index;
}

void SharedStrings::write(ByteSink &sink) const
{
    const QByteArray total = QByteArray::number(m_existing + quint32(m_added.size()));
    const QByteArray si = "<" + m_prefix + "si><" + m_prefix + "t";
    const QByteArray siEnd = "</" + m_prefix + "t></" + m_prefix + "si>";
    if (m_rootBegin < 0) {
        sink.append("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                    "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
                    "uniqueCount=\"");
        sink.append(total);
        sink.append("\">");
    } else {
        sink.append(QByteArrayView(m_xml).first(m_rootBegin));
        QByteArray start = m_xml.mid(m_rootBegin, m_rootStartEnd - m_rootBegin);
        if (m_closeBegin < 0)
            start = start.first(start.size() - 2).trimmed() + ">";
        // The reference count would go stale as cells are overwritten; it is optional.
        start = XmlText::removeAttribute(start, "count");
        sink.append(XmlText::setAttribute(start, "uniqueCount", total));
        if (m_closeBegin >= 0)
            sink.append(QByteArrayView(m_xml).sliced(m_rootStartEnd, m_closeBegin - m_rootStartEnd));
    }
    for (const QString &text : m_added) {
        sink.append(si);
        const bool edges = !text.isEmpty() && (text.front().isSpace() || text.back().isSpace());
        sink.append(edges ? QByteArrayView(" xml:space=\"preserve\">") : QByteArrayView(">"));
        sink.appendText(text);
        sink.append(siEnd);
    }
    sink.append("</" + m_prefix + "sst>");
}

} // namespace quorvale::xlsx
