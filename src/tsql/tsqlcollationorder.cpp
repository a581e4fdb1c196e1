#include "tsql/tsqlcollationorder.h"

#include "tsql/tsqlcollationtable.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>
#include <vector>

namespace quorvale {

QStringView collationOrder()
{
    return QStringView(kCollationTable);
}

QString collationOrderFromCollator()
{
    QCollator collator(QLocale(QLocale::Chinese, QLocale::China));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    struct Entry {
        char16_t ch;
        bool han;
        QCollatorSortKey key;
    };
    std::vector<Entry> entries;
    const std::pair<char16_t, char16_t> ranges[] = {
        {0x20, 0x7e},     {0xa0, 0x24f},    {0x2000, 0x206f}, {0x3000, 0x30ff},
        {0x3400, 0x4dbf}, {0x4e00, 0x9fff}, {0xf900, 0xfaff}, {0xff00, 0xffef}};
    for (const auto &[first, last] : ranges) {
        for (char32_t c = first; c <= last; ++c) {
            const QChar ch{char16_t(c)};
            if (ch.category() == QChar::Other_NotAssigned)
                continue;
            entries.push_back(
                Entry{char16_t(c), ch.script() == QChar::Script_Han, collator.sortKey(QString(ch))});
        }
    }
    // Han after Latin letters and digits, as on SQL Server's Chinese collations.
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        if (a.han != b.han)
            return !a.han;
        return a.key.compare(b.key) < 0;
    });
    QString order;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (i > 0 && entries[i - 1].han == entries[i].han &&
            entries[i - 1].key.compare(entries[i].key) == 0)
            order += kSameWeight;
        order += QChar(entries[i].ch);
    }
    return order;
}

} // namespace quorvale
