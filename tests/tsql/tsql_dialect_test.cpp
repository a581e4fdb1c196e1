// The T-SQL rules the embedded engine must honour where plain SQLite differs.
#include "db/connection.h"
#include "db/recordset.h"
#include "runtime/runtimeerror.h"
#include "tsql/tsqlcollationorder.h"

#include <QCollator>
#include <QLocale>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

class Dialect : public ::testing::Test {
  protected:
    void SetUp() override
    {
        m_db = std::make_shared<Connection>();
        m_db->ConnectionString =
            Connection::embeddedConnectionString(m_dir.filePath(QStringLiteral("d.db")));
        m_db->CreateIfMissing = true;
        m_db->Open();
        m_db->Execute(
            QStringLiteral("CREATE TABLE t (id int PRIMARY KEY, d datetime NULL, s varchar(10) "
                           "NULL, n int NULL, b bit NULL, m money NULL)\n"
                           "INSERT INTO t VALUES (1, '2024-03-31', 'abc', 5, 1, 85.50)\n"
                           "INSERT INTO t VALUES (2, '2024/3/5 10:20:30', 'ABC  ', NULL, 0, 120)\n"
                           "INSERT INTO t VALUES (3, NULL, NULL, 7, NULL, NULL)\n"
                           "CREATE TABLE u (id int, s nvarchar(10))\n"
                           "INSERT INTO u VALUES (1, N'Abc'), (2, N'x')\n"
                           "CREATE TABLE 业主表 (账号 int, 室 int, 说明 nvarchar(10))\n"
                           "INSERT INTO 业主表 VALUES (1, 1, N'新进户 '), (2, 1, N'迁出')"));
    }

    QList<QStringList> rows(const QString &sql)
    {
        Recordset rs;
        rs.Open(sql, m_db);
        QList<QStringList> out;
        while (!rs.eof()) {
            QStringList row;
            for (int i = 0; i < rs.fieldCount(); ++i)
                row << (rs.Fields(i).isNull() ? QStringLiteral("NULL") : rs.Fields(i).text());
            out << row;
            rs.MoveNext();
        }
        return out;
    }
    QString scalar(const QString &sql)
    {
        const auto r = rows(sql);
        return r.isEmpty() ? QStringLiteral("<none>") : r.first().first();
    }
    QString errorOf(const QString &sql)
    {
        try {
            rows(sql);
        } catch (const RuntimeError &e) {
            return e.description();
        }
        return QStringLiteral("<no error>");
    }

    QTemporaryDir m_dir;
    ConnectionPtr m_db;
};

struct Case {
    const char *sql;
    const char *expected;
};

} // namespace

TEST_F(Dialect, ExpressionsMeanWhatSqlServerMeans)
{
    const Case cases[] = {
        {"SELECT CASE WHEN 'abc ' = 'ABC' THEN 1 ELSE 0 END", "1"},
        {"SELECT CASE WHEN N'中文' = N'中文  ' THEN 1 ELSE 0 END", "1"},
        {"SELECT CASE WHEN 'abc' < 'ABD' THEN 1 ELSE 0 END", "1"},
        {"SELECT CASE WHEN 'a' IN ('B', 'A ') THEN 1 ELSE 0 END", "1"},
        {"SELECT CASE WHEN 'b' BETWEEN 'A' AND 'C' THEN 1 ELSE 0 END", "1"},
        {"SELECT CASE WHEN 'x' NOT IN ('X') THEN 1 ELSE 0 END", "0"},
        {"SELECT LEN('ab  ')", "2"},
        {"SELECT LEN(N'中文 ')", "2"},
        {"SELECT LEN('  ab')", "4"},
        {"SELECT NULL + 'x'", "NULL"},
        {"SELECT 'x' + NULL", "NULL"},
        {"SELECT '1' + '2'", "12"},
        {"SELECT 1 + 2", "3"},
        {"SELECT '1' + 2", "3"},
        {"SELECT 1.5 + 1", "2.5"},
        {"SELECT ' ' + 1", "1"},
        {"SELECT N'it''s' + N'好'", "it's好"},
        {"sElEcT CaSe wHeN 1 = 1 tHeN 'y' eLsE 'n' EnD", "y"},
        {"SELECT s + s FROM t WHERE id = 1", "abcabc"},
        {"SELECT s + 'x' FROM t WHERE id = 3", "NULL"},
        {"SELECT n + 1 FROM t WHERE id = 1", "6"},
        {"SELECT n + m FROM t WHERE id = 1", "90.5"},
        {"SELECT ISNULL(s, '-') FROM t WHERE id = 3", "-"},
        {"SELECT COUNT(*) FROM t WHERE s = 'ABC'", "2"},
        {"SELECT COUNT(*) FROM t WHERE s LIKE 'ab%'", "2"},
        {"SELECT COUNT(DISTINCT s) FROM t", "1"},
        {"SELECT TOP 1 [id] FROM [dbo].[t] ORDER BY id DESC", "3"},
        {"SELECT t.id FROM t INNER JOIN u ON t.s = u.s WHERE u.id = 1 ORDER BY t.id DESC", "2"},
        {"SELECT t.id, u.s FROM t JOIN u ON t.id = u.id ORDER BY s DESC", "2"},
        {"SELECT id, s AS k FROM t WHERE id < 3 ORDER BY K, 1", "1"},
        // Table, qualifier and column names ignore case, as the statements spell them freely.
        {"SELECT t.S FROM T WHERE Id = 1", "abc"},
        // The shapes of the report statements: a NULL address part drops out of the
        // joined text, a LEFT JOIN keeps every row and its extra condition is collated.
        {"SELECT Case When s Is Not Null Then s Else '' End + "
         "Case When n Is Not Null Then 'n' Else '' End FROM t WHERE id = 3",
         "n"},
        {"SELECT COUNT(*) FROM t left JOIN 业主表 ON t.id = 业主表.室 and 业主表.说明='新进户'",
         "3"},
        {"SELECT 业主表.账号 FROM t left JOIN 业主表 ON t.id = 业主表.室 and 业主表.说明='新进户' "
         "WHERE t.id = 1",
         "1"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(scalar(QString::fromUtf8(c.sql)), QString::fromUtf8(c.expected)) << c.sql;
    EXPECT_EQ(errorOf(QStringLiteral("SELECT s + n FROM t WHERE id = 1")),
              QStringLiteral(
                  "Conversion failed when converting the varchar value 'abc' to data type int."));
}

TEST_F(Dialect, DateLiteralsConvertAgainstDatetimeColumns)
{
    const Case cases[] = {
        {"SELECT id FROM t WHERE d = '2024-03-31'", "1"},
        {"SELECT id FROM t WHERE d = '2024/03/31'", "1"},
        {"SELECT id FROM t WHERE d = '2024/3/31'", "1"},
        {"SELECT id FROM t WHERE d = '20240331'", "1"},
        {"SELECT id FROM t WHERE d = ' 2024-03-31 00:00 '", "1"},
        {"SELECT id FROM t WHERE d = '2024-03-31T00:00:00'", "1"},
        {"SELECT id FROM t WHERE '2024.03.31' = d", "1"},
        {"SELECT id FROM t WHERE d = '2024-03-05 10:20:30'", "2"},
        {"SELECT id FROM t WHERE d = '2024-3-5 10:20:30.000'", "2"},
        {"SELECT id FROM t WHERE d > '2024/3/5' ORDER BY id DESC", "2"},
        {"SELECT COUNT(*) FROM t WHERE d > '2024/3/5'", "2"},
        {"SELECT COUNT(*) FROM t WHERE d <= '2024/3/5'", "0"},
        {"SELECT id FROM t WHERE d BETWEEN '20240301' AND '2024-03-05 10:20:30'", "2"},
        {"SELECT id FROM t WHERE d IN ('2024/3/31', '2024-01-01')", "1"},
        {"SELECT id FROM t WHERE d <> '2024-03-31'", "2"},
        {"SELECT id FROM t WHERE NOT (d < '2024-03-31')", "1"},
        // The receipt conditions of the finance statements.
        {"SELECT SUM(id) FROM t WHERE (d Is Null OR (d > '2024/3/5 12:00'))", "4"},
        {"SELECT COUNT(*) FROM t WHERE d BETWEEN '2024-04-30' AND '2024-03-01'", "0"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(scalar(QString::fromUtf8(c.sql)), QString::fromUtf8(c.expected)) << c.sql;

    const QString conversion =
        QStringLiteral("Conversion failed when converting date and/or time from character string.");
    for (const char *sql :
         {"SELECT id FROM t WHERE d = '2024-02-30'", "SELECT id FROM t WHERE d > 'abc'",
          "SELECT id FROM t WHERE d = '2024-13-01'", "SELECT id FROM t WHERE d = '202403'",
          "SELECT id FROM t WHERE d BETWEEN '2024-01-01' AND '2024-01-32'",
          "SELECT id FROM t WHERE d = '2024-03-31 25:00'"})
        EXPECT_EQ(errorOf(QString::fromUtf8(sql)), conversion) << sql;
    EXPECT_THROW(m_db->Execute(QStringLiteral("INSERT INTO t (id, d) VALUES (9, '31/03/2024')")),
                 RuntimeError);
    // Months stay text: '202403' against a text column is no date.
    EXPECT_EQ(scalar(QStringLiteral("SELECT COUNT(*) FROM t WHERE s <= '202403'")),
              QStringLiteral("0"));
}

TEST_F(Dialect, ColumnsRenderByTheirDeclaredKind)
{
    EXPECT_EQ(rows(QStringLiteral("SELECT d, s, n, b, m FROM t ORDER BY id")),
              (QList<QStringList>{{"2024-03-31", "abc", "5", "1", "85.5"},
                                  {"2024-03-05 10:20:30", "ABC  ", "NULL", "0", "120"},
                                  {"NULL", "NULL", "7", "NULL", "NULL"}}));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT *, s AS [my col], LEN(s) FROM t"), m_db);
    ASSERT_EQ(rs.fieldCount(), 8);
    EXPECT_EQ(rs.Fields(6).name(), QStringLiteral("my col"));
    EXPECT_EQ(rs.Fields(7).name(), QString());
    EXPECT_EQ(rs.Fields(QStringLiteral("D")).kind(), FieldKind::DateTime);
    EXPECT_EQ(rs.Fields(QStringLiteral("b")).kind(), FieldKind::Bit);
    EXPECT_EQ(rs.Fields(QStringLiteral("m")).kind(), FieldKind::Number);
}

TEST_F(Dialect, TextOrdersAndGroupsWithoutCaseOrTrailingBlanks)
{
    m_db->Execute(QStringLiteral(
        "CREATE TABLE w (k int, s nvarchar(20))\n"
        "INSERT INTO w VALUES (1, N'北京'), (2, N'b'), (3, N'A'), (4, N'a '), (5, N'安徽'),"
        " (6, N'C'), (7, N'重庆'), (8, N'10'), (9, N'2')"));
    QStringList order;
    for (const QStringList &r : rows(QStringLiteral("SELECT s, k FROM w ORDER BY s, k")))
        order << r.first();
    // Digits and Latin before Han, as on SQL Server; Han by pinyin: an(安) < bei(北) < chong(重).
    EXPECT_EQ(order, (QStringList{"10", "2", "A", "a ", "b", "C", "安徽", "北京", "重庆"}));
    EXPECT_EQ(rows(QStringLiteral("SELECT DISTINCT s FROM w WHERE s = 'A'")).size(), 1);
    EXPECT_EQ(scalar(QStringLiteral("SELECT COUNT(*) FROM w GROUP BY s HAVING COUNT(*) > 1")),
              QStringLiteral("2"));
    EXPECT_EQ(scalar(QStringLiteral("SELECT TOP 1 s FROM w ORDER BY LEN(s) DESC, s DESC")),
              QStringLiteral("重庆"));
    EXPECT_THROW(m_db->Execute(QStringLiteral("CREATE UNIQUE INDEX ux ON w (s)")), RuntimeError);
}

// The engine's order is committed data, so that it sorts alike everywhere;
// it must stay the ICU collator's (Linux's Qt uses ICU, Windows' does not).
TEST(CollationOrder, IsTheIcuCollatorsOrder)
{
#ifdef Q_OS_WIN
    GTEST_SKIP() << "Qt on Windows collates with the system's rules, not ICU's";
#endif
    EXPECT_TRUE(collationOrder() == collationOrderFromCollator())
        << "regenerate: build/src/make-collation-order > src/tsql/tsqlcollationtable.h";
}

// Texts compare character by character on precomputed weights; for Latin
// text that must give exactly the collator's order.
TEST_F(Dialect, CharacterWeightsAgreeWithTheCollatorOnAscii)
{
#ifdef Q_OS_WIN
    GTEST_SKIP() << "Qt on Windows collates with the system's rules, not ICU's";
#endif
    QRandomGenerator random(20240331);
    const QString alphabet =
        QStringLiteral(" !\"#$%&'()*+,-./0123456789:;<=>?@ABCXYZ[\\]^_`abcxyz{|}~");
    QStringList values;
    for (int i = 0; i < 300; ++i) {
        QString v;
        const int n = 1 + int(random.bounded(5));
        for (int j = 0; j < n; ++j)
            v += alphabet.at(int(random.bounded(int(alphabet.size()))));
        values << v;
    }
    QStringList tuples;
    for (int i = 0; i < values.size(); ++i) {
        QString quoted = values.at(i);
        quoted.replace(QLatin1Char('\''), QLatin1String("''"));
        tuples << QStringLiteral("(%1, N'%2')").arg(i).arg(quoted);
    }
    m_db->Execute(QStringLiteral("CREATE TABLE r (k int, s varchar(20)) INSERT INTO r VALUES ") +
                  tuples.join(QLatin1Char(',')));
    QCollator collator(QLocale(QLocale::Chinese, QLocale::China));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    auto trimmed = [](QString s) {
        while (s.endsWith(QLatin1Char(' ')))
            s.chop(1);
        return s;
    };
    const auto got = rows(QStringLiteral("SELECT s FROM r ORDER BY s"));
    ASSERT_EQ(got.size(), values.size());
    for (int i = 1; i < got.size(); ++i)
        EXPECT_LE(collator.compare(trimmed(got.at(i - 1).first()), trimmed(got.at(i).first())), 0)
            << got.at(i - 1).first().toStdString() << " before " << got.at(i).first().toStdString();
}

TEST_F(Dialect, UnknownSyntaxNamesTokenAndPosition)
{
    const Case cases[] = {
        {"SELECT s FROM t WHERE s == 'a'", "Incorrect syntax near '=' (position 26)."},
        {"SELECT s, FROM t", "Incorrect syntax near 'FROM' (position 11)."},
        {"SELECT s FROM t WHERE s = ?", "Incorrect syntax near '?' (position 27)."},
        {"SELECT 'abc", "Incorrect syntax near ''abc' (position 8)."},
        {"SELECT s FROM t GROUP s", "Incorrect syntax near 's' (position 23)."},
        {"SELECT s FROM t UNION SELECT s FROM u", "Incorrect syntax near 'UNION' (position 17)."},
        {"SELECT CONVERT(varchar, d) FROM t",
         "'CONVERT' is not a recognized built-in function name (position 8)."},
        {"SELECT zz FROM t", "Invalid column name 'zz' (position 8)."},
        {"SELECT x.s FROM t", "The multi-part identifier \"x\" could not be bound (position 8)."},
        {"SELECT s FROM t a JOIN u b ON a.id = b.id", "Ambiguous column name 's' (position 8)."},
        {"SELECT s FROM nowhere", "Invalid object name 'nowhere' (position 15)."},
        {"SELECT s FROM t WHERE s IN (SELECT s FROM u)",
         "Incorrect syntax near 'SELECT' (position 29)."},
        {"SELECT s FROM t WHERE s LIKE '[a-c]%'",
         "LIKE character classes are not supported by the embedded engine (position 30)."},
    };
    for (const Case &c : cases)
        EXPECT_EQ(errorOf(QString::fromUtf8(c.sql)), QString::fromUtf8(c.expected)) << c.sql;
    EXPECT_EQ(errorOf(QStringLiteral("INSERT INTO t (id) VALUES (4)")),
              QStringLiteral("A recordset needs exactly one SELECT statement."));
}

TEST_F(Dialect, SchemaStatementsKeepSqlServerMeaning)
{
    m_db->Execute(
        QStringLiteral("CREATE TABLE v (ID int IDENTITY(1,1) NOT NULL, code varchar(5) NOT NULL, "
                       "made datetime NOT NULL DEFAULT GETDATE(), flag bit NOT NULL DEFAULT ((0)),"
                       " CONSTRAINT PK_v PRIMARY KEY NONCLUSTERED (code))\n"
                       "CREATE TABLE q (ID int IDENTITY PRIMARY KEY, code char(3) DEFAULT 'x')\n"
                       "INSERT INTO v (code) VALUES ('a')\n"
                       "INSERT INTO v (code, flag) VALUES ('b', 1)\n"
                       "INSERT INTO q (code) VALUES ('p'), ('q')\n"
                       "INSERT INTO q DEFAULT VALUES"));
    EXPECT_EQ(rows(QStringLiteral("SELECT ID, code, flag, LEN(made) FROM v ORDER BY ID")),
              (QList<QStringList>{{"1", "a", "0", "19"}, {"2", "b", "1", "19"}}));
    // Primary keys on text follow the collation: 'A ' is 'a'.
    EXPECT_THROW(m_db->Execute(QStringLiteral("INSERT INTO v (code) VALUES ('A ')")), RuntimeError);
    m_db->Execute(QStringLiteral(
        "UPDATE v SET made = '2024/1/2' WHERE code = 'A'\nDELETE FROM v WHERE code = 'B'"));
    EXPECT_EQ(rows(QStringLiteral("SELECT made FROM v")), (QList<QStringList>{{"2024-01-02"}}));
    EXPECT_THROW(m_db->Execute(QStringLiteral("CREATE TABLE z (a geography)")), RuntimeError);
    EXPECT_THROW(m_db->Execute(QStringLiteral("CREATE TABLE t (a int)")), RuntimeError);
    m_db->Execute(QStringLiteral("DROP TABLE q"));
    EXPECT_THROW(rows(QStringLiteral("SELECT * FROM q")), RuntimeError);
}
