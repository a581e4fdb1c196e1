#include "xlsx/xlsxbytesink.h"

#include <charconv>

namespace quorvale::xlsx {

ByteSink::ByteSink(Consumer consumer, size_t chunkSize)
    : m_consumer(std::move(consumer)), m_chunkSize(chunkSize)
{
    m_buffer.reserve(chunkSize + 4096);
}

ByteSink::~ByteSink() = default;

void ByteSink::flush()
{
    if (m_buffer.empty())
        return;
    std::string chunk;
    chunk.reserve(m_chunkSize + 4096);
    chunk.swap(m_buffer);
    m_consumer(std::move(chunk));
}

void ByteSink::appendUInt(unsigned value)
{
    char buf[16];
    const auto r = std::to_chars(buf, buf + sizeof buf, value);
    m_buffer.append(buf, size_t(r.ptr - buf));
}

void ByteSink::appendDouble(double value)
{
    char buf[32];
    const auto r = std::to_chars(buf, buf + sizeof buf, value);
    m_buffer.append(buf, size_t(r.ptr - buf));
}

static bool isEscapePattern(QStringView text, qsizetype i)
{
    // "_x0041_" would be read back as "A"; its underscore must be escaped.
    if (i + 6 >= text.size() || text[i + 1] != u'x' || text[i + 6] != u'_')
        return false;
    for (qsizetype k = i + 2; k < i + 6; ++k) {
        const char16_t c = text[k].unicode();
        if (!((c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F')))
            return false;
    }
    return true;
}

void ByteSink::appendText(QStringView text)
{
    const char16_t *s = text.utf16();
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        char32_t c = s[i];
        if (c < 0x80) {
            switch (c) {
            case '&': m_buffer.append("&amp;", 5); break;
            case '<': m_buffer.append("&lt;", 4); break;
            case '>': m_buffer.append("&gt;", 4); break;
            case '_':
                if (isEscapePattern(text, i))
                    m_buffer.append("_x005F_", 7);
                else
                    m_buffer.push_back('_');
                break;
            default:
                if (c < 0x20 && c != '\t' && c != '\n' && c != '\r') {
                    static const char hex[] = "0123456789ABCDEF";
                    const char esc[] = {'_', 'x', '0', '0', hex[(c >> 4) & 15], hex[c & 15], '_'};
                    m_buffer.append(esc, 7);
                } else {
                    m_buffer.push_back(char(c));
                }
            }
            continue;
        }
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < n && s[i + 1] >= 0xDC00 && s[i + 1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (s[i + 1] - 0xDC00);
            ++i;
        } else if (c >= 0xD800 && c < 0xE000) {
            c = 0xFFFD; // lone surrogate
        } else if (c == 0xFFFE || c == 0xFFFF) {
            c = 0xFFFD;
        }
        char buf[4];
        int len;
        if (c < 0x800) {
            buf[0] = char(0xC0 | (c >> 6));
            buf[1] = char(0x80 | (c & 0x3F));
            len = 2;
        } else if (c < 0x10000) {
            buf[0] = char(0xE0 | (c >> 12));
            buf[1] = char(0x80 | ((c >> 6) & 0x3F));
            buf[2] = char(0x80 | (c & 0x3F));
            len = 3;
        } else {
            buf[0] = char(0xF0 | (c >> 18));
            buf[1] = char(0x80 | ((c >> 12) & 0x3F));
            buf[2] = char(0x80 | ((c >> 6) & 0x3F));
            buf[3] = char(0x80 | (c & 0x3F));
            len = 4;
        }
        m_buffer.append(buf, size_t(len));
    }
    if (m_buffer.size() >= m_chunkSize)
        flush();
}

} // namespace quorvale::xlsx
