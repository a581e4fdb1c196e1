#include "platform/tsqlfunctions.h"

#include "platform/tsqltranslator.h"

#include <QCollator>
#include <QLocale>
#include <QString>
#include <algorithm>
#include <array>
#include <sqlite3.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace quorvale {

namespace {

// Per connection: SQLite calls a collation only from the thread using it.
class CollationState {
public:
    CollationState() : m_collator(QLocale(QLocale::Chinese, QLocale::China))
    {
        m_collator.setCaseSensitivity(Qt::CaseInsensitive);
        m_collator.setNumericMode(false);
        // Printable ASCII compares character by character under the collator's
        // order; ranking the characters once keeps the common case off ICU.
        m_rank.fill(-1);
        std::vector<char> chars;
        for (char c = 0x20; c < 0x7f; ++c)
            chars.push_back(c);
        auto cmp = [this](char a, char b) {
            return m_collator.compare(QString(QLatin1Char(a)), QString(QLatin1Char(b)));
        };
        std::stable_sort(chars.begin(), chars.end(), [&](char a, char b) { return cmp(a, b) < 0; });
        int rank = 0;
        for (size_t i = 0; i < chars.size(); ++i) {
            if (i > 0 && cmp(chars[i - 1], chars[i]) != 0)
                ++rank;
            m_rank[static_cast<unsigned char>(chars[i])] = rank;
        }
    }

    int compare(const unsigned char *a, int na, const unsigned char *b, int nb)
    {
        while (na > 0 && a[na - 1] == ' ')
            --na;
        while (nb > 0 && b[nb - 1] == ' ')
            --nb;
        if (printableAscii(a, na) && printableAscii(b, nb)) {
            const int n = std::min(na, nb);
            for (int i = 0; i < n; ++i) {
                const int d = m_rank[a[i]] - m_rank[b[i]];
                if (d != 0)
                    return d < 0 ? -1 : 1;
            }
            return na == nb ? 0 : (na < nb ? -1 : 1);
        }
        const int c = key(a, na).compare(key(b, nb));
        return c == 0 ? 0 : (c < 0 ? -1 : 1);
    }

private:
    bool printableAscii(const unsigned char *s, int n) const
    {
        for (int i = 0; i < n; ++i)
            if (s[i] >= 0x80 || m_rank[s[i]] < 0)
                return false;
        return true;
    }

    const QCollatorSortKey &key(const unsigned char *s, int n)
    {
        std::string bytes(reinterpret_cast<const char *>(s), size_t(n));
        auto found = m_keys.find(bytes);
        if (found != m_keys.end())
            return found->second;
        if (m_keys.size() > 200000)
            m_keys.clear();
        const QString text = QString::fromUtf8(reinterpret_cast<const char *>(s), n);
        return m_keys.emplace(std::move(bytes), m_collator.sortKey(text)).first->second;
    }

    QCollator m_collator;
    std::array<int, 128> m_rank{};
    std::unordered_map<std::string, QCollatorSortKey> m_keys;
};

int collate(void *state, int na, const void *a, int nb, const void *b)
{
    return static_cast<CollationState *>(state)->compare(static_cast<const unsigned char *>(a), na,
                                                           static_cast<const unsigned char *>(b), nb);
}

void destroyCollation(void *state)
{
    delete static_cast<CollationState *>(state);
}

// A string operand of a numeric '+' converts as SQL Server's int/float would.
bool toNumber(sqlite3_value *v, sqlite3_int64 &i, double &d, bool &isInt)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(v))).trimmed();
    bool ok = false;
    i = text.toLongLong(&ok);
    if (ok) {
        isInt = true;
        return true;
    }
    d = text.toDouble(&ok);
    isInt = false;
    return ok;
}

void tsqlAdd(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const int ta = sqlite3_value_type(argv[0]);
    const int tb = sqlite3_value_type(argv[1]);
    if (ta == SQLITE_NULL || tb == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    const bool textA = ta == SQLITE_TEXT || ta == SQLITE_BLOB;
    const bool textB = tb == SQLITE_TEXT || tb == SQLITE_BLOB;
    if (textA && textB) {
        std::string joined(reinterpret_cast<const char *>(sqlite3_value_text(argv[0])),
                           size_t(sqlite3_value_bytes(argv[0])));
        joined.append(reinterpret_cast<const char *>(sqlite3_value_text(argv[1])),
                      size_t(sqlite3_value_bytes(argv[1])));
        sqlite3_result_text(ctx, joined.data(), int(joined.size()), SQLITE_TRANSIENT);
        return;
    }
    sqlite3_int64 ia = 0, ib = 0;
    double da = 0, db = 0;
    bool intA = ta == SQLITE_INTEGER, intB = tb == SQLITE_INTEGER;
    auto operand = [&](sqlite3_value *v, bool text, sqlite3_int64 &i, double &d, bool &isInt) {
        if (!text) {
            i = sqlite3_value_int64(v);
            d = sqlite3_value_double(v);
            return true;
        }
        if (toNumber(v, i, d, isInt))
            return true;
        const std::string message = std::string("Conversion failed when converting the varchar value '") +
                                    reinterpret_cast<const char *>(sqlite3_value_text(v)) +
                                    "' to data type int.";
        sqlite3_result_error(ctx, message.c_str(), -1);
        return false;
    };
    if (!operand(argv[0], textA, ia, da, intA) || !operand(argv[1], textB, ib, db, intB))
        return;
    if (intA && intB)
        sqlite3_result_int64(ctx, ia + ib);
    else
        sqlite3_result_double(ctx, (intA ? double(ia) : da) + (intB ? double(ib) : db));
}

} // namespace

bool registerTsqlFunctions(sqlite3 *db)
{
    if (!db)
        return false;
    auto *state = new CollationState;
    if (sqlite3_create_collation_v2(db, tsqlCollation, SQLITE_UTF8, state, collate, destroyCollation) !=
        SQLITE_OK) {
        delete state;
        return false;
    }
    return sqlite3_create_function_v2(db, "tsql_add", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, tsqlAdd,
                                      nullptr, nullptr, nullptr) == SQLITE_OK;
}

} // namespace quorvale
