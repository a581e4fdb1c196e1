#include "xlsx/xlsxsharedstrings.h"

#include "xlsx/xlsxbytesink.h"
#include "xlsx/xlsxvocabulary.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>
#include <cstring>

namespace quorvale::xlsx {

SharedStrings::SharedStrings(const Vocabulary &vocabulary) : m_namespace(vocabulary.main) {}

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

namespace {

quint64 hashText(QStringView text)
{
    const char *p = reinterpret_cast<const char *>(text.utf16());
    size_t len = size_t(text.size()) * 2;
    quint64 h = 0x9E3779B97F4A7C15ull ^ (len * 0xC2B2AE3D27D4EB4Full);
    while (len >= 8) {
        quint64 k;
        std::memcpy(&k, p, 8);
        h = (h ^ k) * 0xFF51AFD7ED558CCDull;
        h ^= h >> 29;
        p += 8;
        len -= 8;
    }
    quint64 tail = 0;
    std::memcpy(&tail, p, len);
    h = (h ^ tail) * 0xC4CEB9FE1A85EC53ull;
    return h ^ (h >> 32);
}

constexpr qsizetype BlockChars = qsizetype(1) << 18;

} // namespace

QStringView SharedStrings::store(QStringView text)
{
    if (text.isEmpty())
        return u"";
    if (text.size() > m_blockFree) {
        // A text longer than a quarter block gets a block of its own, so the
        // current block is not abandoned half-used.
        const bool own = text.size() > BlockChars / 4;
        const qsizetype size = own ? text.size() : BlockChars;
        auto block = std::make_unique_for_overwrite<char16_t[]>(size_t(size));
        if (own) {
            char16_t *data = block.get();
            std::copy(text.utf16(), text.utf16() + text.size(), data);
            m_blocks.insert(m_blocks.end() - (m_blocks.empty() ? 0 : 1), std::move(block));
            return QStringView(data, text.size());
        }
        m_blocks.push_back(std::move(block));
        m_blockFree = BlockChars;
    }
    char16_t *data = m_blocks.back().get() + (BlockChars - m_blockFree);
    std::copy(text.utf16(), text.utf16() + text.size(), data);
    m_blockFree -= text.size();
    return QStringView(data, text.size());
}

void SharedStrings::grow()
{
    std::vector<quint32> slots(m_slots.empty() ? 1024 : m_slots.size() * 2, 0);
    const size_t mask = slots.size() - 1;
    for (size_t i = 0; i < m_added.size(); ++i) {
        size_t at = size_t(m_hashes[i]) & mask;
        while (slots[at])
            at = (at + 1) & mask;
        slots[at] = quint32(i + 1);
    }
    m_slots.swap(slots);
}

quint32 SharedStrings::add(const QString &text)
{
    if ((m_added.size() + 1) * 2 > m_slots.size())
        grow();
    const quint64 h = hashText(text);
    const size_t mask = m_slots.size() - 1;
    size_t at = size_t(h) & mask;
    while (const quint32 slot = m_slots[at]) {
        if (m_hashes[slot - 1] == h && m_added[slot - 1] == text)
            return m_existing + slot - 1;
        at = (at + 1) & mask;
    }
    m_slots[at] = quint32(m_added.size() + 1);
    m_added.push_back(store(text));
    m_hashes.push_back(h);
    return m_existing + quint32(m_added.size() - 1);
}

void SharedStrings::write(ByteSink &sink) const
{
    const QByteArray total = QByteArray::number(m_existing + quint32(m_added.size()));
    const QByteArray si = "<" + m_prefix + "si><" + m_prefix + "t";
    const QByteArray siEnd = "</" + m_prefix + "t></" + m_prefix + "si>";
    if (m_rootBegin < 0) {
        sink.append("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                    "<sst xmlns=\"");
        sink.append(m_namespace);
        sink.append("\" uniqueCount=\"");
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
    for (const QStringView text : m_added) {
        sink.append(si);
        const bool edges = !text.isEmpty() && (text.front().isSpace() || text.back().isSpace());
        sink.append(edges ? QByteArrayView(" xml:space=\"preserve\">") : QByteArrayView(">"));
        sink.appendText(text);
        sink.append(siEnd);
    }
    sink.append("</" + m_prefix + "sst>");
}

} // namespace quorvale::xlsx
