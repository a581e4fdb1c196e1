#include "tsql/tsqlfunctions.h"

#include "tsql/tsqlcollationorder.h"
#include "tsql/tsqlsqliteapi.h"
#include "tsql/tsqltranslator.h"

#include <QString>
#include <algorithm>
#include <string>
#include <vector>

namespace quorvale {

namespace {

// Every character gets one weight, so comparing two texts is a walk over
// their characters: case and width variants share a weight, Han characters
// follow their pinyin order after Latin letters and digits (the committed
// collation order).
class CharacterWeights {
  public:
    static const CharacterWeights &instance()
    {
        static const CharacterWeights weights;
        return weights;
    }

    quint32 weight(char32_t cp) const
    {
        if (cp < m_table.size() && m_table[cp] != 0)
            return m_table[cp];
        return unrankedBase + quint32(cp);
    }

  private:
    static constexpr quint32 hanBase = 0x100000;
    static constexpr quint32 unrankedBase = 0x200000;

    CharacterWeights() : m_table(0x10000, 0)
    {
        quint32 rank = 0;
        bool same = false;
        for (const QChar ch : collationOrder()) {
            if (ch == kSameWeight) {
                same = true;
                continue;
            }
            if (!same)
                ++rank;
            same = false;
            m_table[ch.unicode()] = (ch.script() == QChar::Script_Han ? hanBase : 0) + rank;
        }
    }

    std::vector<quint32> m_table;
};

// Next code point of UTF-8 text; malformed bytes stand for themselves.
char32_t nextCodePoint(const unsigned char *&p, const unsigned char *end)
{
    const unsigned char c = *p++;
    if (c < 0x80)
        return c;
    int extra = c >= 0xf0 ? 3 : c >= 0xe0 ? 2 : c >= 0xc0 ? 1 : 0;
    if (extra == 0 || end - p < extra)
        return c;
    char32_t cp = c & (0x3f >> extra);
    while (extra-- > 0)
        cp = (cp << 6) | (*p++ & 0x3f);
    return cp;
}

int collate(void *, int na, const void *va, int nb, const void *vb)
{
    auto a = static_cast<const unsigned char *>(va);
    auto b = static_cast<const unsigned char *>(vb);
    while (na > 0 && a[na - 1] == ' ')
        --na;
    while (nb > 0 && b[nb - 1] == ' ')
        --nb;
    const unsigned char *ea = a + na;
    const unsigned char *eb = b + nb;
    const CharacterWeights &weights = CharacterWeights::instance();
    for (;;) {
        // Control characters carry no weight.
        while (a < ea && *a < 0x20)
            ++a;
        while (b < eb && *b < 0x20)
            ++b;
        if (a == ea || b == eb)
            return (a == ea) == (b == eb) ? 0 : (a == ea ? -1 : 1);
        const quint32 wa = weights.weight(nextCodePoint(a, ea));
        const quint32 wb = weights.weight(nextCodePoint(b, eb));
        if (wa != wb)
            return wa < wb ? -1 : 1;
    }
}

// A string operand of a numeric '+' converts as SQL Server's int/float would.
bool toNumber(sqlite3_value *v, sqlite3_int64 &i, double &d, bool &isInt)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(v))).trimmed();
    // SQL Server reads an empty or blank string as 0.
    if (text.isEmpty()) {
        i = 0;
        isInt = true;
        return true;
    }
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
        const std::string message =
            std::string("Conversion failed when converting the varchar value '") +
            reinterpret_cast<const char *>(sqlite3_value_text(v)) + "' to data type int.";
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
    CharacterWeights::instance();
    // SQLite's join Bloom filters hash text by its bytes, which drops matches
    // that the collation calls equal ('ABC  ' = 'abc'); switch them off.
    // The flag values are SQLite's own optimisation bits (since 3.38).
    constexpr int bloomFilter = 0x00080000;
    constexpr int bloomPulldown = 0x00100000;
    sqlite3_test_control(SQLITE_TESTCTRL_OPTIMIZATIONS, db, bloomFilter | bloomPulldown);
    if (sqlite3_create_collation_v2(db, tsqlCollation, SQLITE_UTF8, nullptr, collate, nullptr) !=
        SQLITE_OK)
        return false;
    return sqlite3_create_function_v2(db, "tsql_add", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                      nullptr, tsqlAdd, nullptr, nullptr, nullptr) == SQLITE_OK;
}

} // namespace quorvale
