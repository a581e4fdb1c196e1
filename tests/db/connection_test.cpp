#include "db/configuredconnection.h"
#include "db/connection.h"
#include "db/recordset.h"
#include "runtime/runtimeerror.h"
#include "support/fixturedb.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

QString adoString(const QString &server)
{
    return QStringLiteral(
               "Provider=SQLOLEDB.1;Password=pw;Persist Security Info=False;User ID=sa;Initial "
               "Catalog='wygl';Data Source='%1'")
        .arg(server);
}

ConnectionPtr createDb(const QString &path)
{
    auto c = std::make_shared<Connection>();
    c->ConnectionString = Connection::embeddedConnectionString(path);
    c->CreateIfMissing = true;
    c->Open();
    return c;
}

} // namespace

TEST(Connection, RefusedOpensNameTheirCauseAndCreateNothing)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath("none.db");
    const QString busy = dir.filePath("busy.db");
    createDb(busy)->Execute("CREATE TABLE t (a int)");
    // Another writer holds the file for longer than the connection waits; a busy
    // file must not pass for one that lacks the table.
    QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "w");
    other.setDatabaseName(busy);
    ASSERT_TRUE(other.open());
    QSqlQuery(other).exec("BEGIN EXCLUSIVE");
    const struct {
        QString server;
        QStringList causes;
    } cases[] = {
        {"sqlite:" + missing, {QDir::toNativeSeparators(missing)}},
        {"sqlite:" + busy, {"locked by another program", QDir::toNativeSeparators(busy)}},
        // A quote inside a quoted value breaks the string; nothing is escaped.
        {"o'brien", {"malformed"}},
    };
    for (const auto &c : cases) {
        Connection connection;
        connection.ConnectionString = adoString(c.server);
        connection.ConnectionTimeout = 1;
        try {
            connection.Open();
            ADD_FAILURE() << "opened " << c.server.toStdString();
        } catch (const RuntimeError &e) {
            EXPECT_EQ(e.number(), ErrorNumber::DatabaseError);
            for (const QString &cause : c.causes)
                EXPECT_TRUE(e.description().contains(cause)) << e.what();
        }
        EXPECT_FALSE(connection.isOpen());
    }
    EXPECT_FALSE(QFile::exists(missing));
    other.close();
    other = QSqlDatabase();
    QSqlDatabase::removeDatabase("w");
}

TEST(Connection, SchemaScriptWithGoBatchesThenQuery)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("wygl.db");
    ConnectionPtr c = createDb(path);
    EXPECT_TRUE(c->isEmbedded());
    c->Execute(QStringLiteral("SET ANSI_NULLS ON\nGO\n"
                              "CREATE TABLE [dbo].[设置管理处] (\n"
                              "  [GYD_DH] varchar(10) NOT NULL PRIMARY KEY,\n"
                              "  [GYD_Name] nvarchar(50) NULL,\n"
                              "  [商用物业] int NULL,\n"
                              "  [对应部门代号] varchar(10) COLLATE Chinese_PRC_CI_AS NULL\n"
                              ") ON [PRIMARY]\n"
                              "go\n"
                              "CREATE TABLE WYZJ (ID int IDENTITY(1,1) NOT NULL, ZJ_CNY char(6), "
                              "ZJ_JE money DEFAULT (0),\n"
                              "  ZJ_SKRQ datetime NULL, 有效 bit NOT NULL DEFAULT ((1)), "
                              "CONSTRAINT PK_WYZJ PRIMARY KEY CLUSTERED (ID))\n"
                              "CREATE NONCLUSTERED INDEX IX_CNY ON WYZJ (ZJ_CNY ASC)\n"
                              "GO\n"
                              "INSERT INTO 设置管理处 (GYD_DH, GYD_Name, 商用物业, 对应部门代号) "
                              "VALUES ('01', N'东城管理处', NULL, 'D1')\n"
                              "INSERT INTO 设置管理处 VALUES ('02', N'西城管理处', 1, 'D1');\n"
                              "INSERT INTO WYZJ (ZJ_CNY, ZJ_JE, ZJ_SKRQ) VALUES ('202403', 85.50, "
                              "'2024/3/5'), ('202404', 120, NULL)\n"));
    EXPECT_EQ(rowsOf(c, QStringLiteral(
                            "Select GYD_DH,GYD_Name,商用物业 From 设置管理处 Order By GYD_DH")),
              (QList<QStringList>{{"01", "东城管理处", ""}, {"02", "西城管理处", "1"}}));
    EXPECT_EQ(rowsOf(c, "SELECT * FROM WYZJ ORDER BY ID"),
              (QList<QStringList>{{"1", "202403", "85.5", "2024-03-05", "1"},
                                  {"2", "202404", "120", "", "1"}}));
    // The index went in under a name of its own table.
    EXPECT_THROW(c->Execute("CREATE INDEX IX_CNY ON WYZJ (ZJ_JE)"), RuntimeError);
    EXPECT_NO_THROW(c->Execute("CREATE INDEX IX_CNY ON 设置管理处 (GYD_Name)"));

    // A second connection to the same file reads the column kinds from it.
    EXPECT_EQ(rowsOf(createDb(path), "SELECT ZJ_SKRQ FROM WYZJ WHERE ZJ_SKRQ > '2024/3/1'"),
              (QList<QStringList>{{"2024-03-05"}}));
}

TEST(Connection, RelativePathIsBesideTheProgram)
{
    const QString name = "quorvale-relative-test.db";
    const QString full = QDir(QCoreApplication::applicationDirPath()).filePath(name);
    QFile::remove(full);
    {
        Connection c;
        c.ConnectionString = Connection::embeddedConnectionString(name);
        c.CreateIfMissing = true;
        c.Open();
        c.Execute("CREATE TABLE t (a int)");
    }
    EXPECT_TRUE(QFile::exists(full));
    QFile::remove(full);
}

// A database file may be named as any file: quotes, semicolons, blanks.
TEST(Connection, EmbeddedFileNamesNeedNoCare)
{
    QTemporaryDir dir;
    for (const QString name : {"o'k.db", "a;b.db", "空 格.db", "''.db"}) {
        SCOPED_TRACE(name.toStdString());
        const QString path = dir.filePath(name);
        EXPECT_NO_THROW(createDb(path)->Execute("CREATE TABLE t (a int)"));
        EXPECT_TRUE(QFile::exists(path));
    }
}

TEST(Connection, EachConnectionHasItsOwnQtConnectionAndRemovesIt)
{
    QTemporaryDir dir;
    const QStringList before = QSqlDatabase::connectionNames();
    {
        ConnectionPtr a = createDb(dir.filePath("a.db"));
        ConnectionPtr b = createDb(dir.filePath("b.db"));
        EXPECT_EQ(QSqlDatabase::connectionNames().size(), before.size() + 2);
        a->Execute("CREATE TABLE t (a int)");
        EXPECT_THROW(rowsOf(b, "SELECT a FROM t"), RuntimeError);
    }
    EXPECT_EQ(QSqlDatabase::connectionNames(), before);
}

TEST(Recordset, AdoErrorsForMisuse)
{
    QTemporaryDir dir;
    ConnectionPtr c = createDb(dir.filePath("r.db"));
    c->Execute("CREATE TABLE t (a int, b varchar(5)) INSERT INTO t VALUES (1, 'x')");
    Recordset rs;
    rs.Open("select a, b AS Bee from t", c);
    ASSERT_FALSE(rs.eof());
    EXPECT_EQ(rs.Fields("bee").text(), "x");
    EXPECT_EQ(rs.Fields("A").name(), "a");
    auto number = [&](auto f) {
        try {
            f();
        } catch (const RuntimeError &e) {
            return e.number();
        }
        return 0;
    };
    EXPECT_EQ(number([&] { rs.Fields("c"); }), 3265);
    rs.MoveNext();
    EXPECT_TRUE(rs.eof());
    EXPECT_EQ(number([&] { rs.Fields(0); }), 3021);
    EXPECT_EQ(number([&] { rs.MoveNext(); }), 3021);
    rs.Close();

    Recordset bad;
    EXPECT_EQ(number([&] { bad.Open("select a from t", c, 1, 1); }), 3001);
    EXPECT_EQ(number([&] { bad.Open("select a from t", std::make_shared<Connection>()); }), 3709);
    EXPECT_EQ(number([&] { bad.Open("select zz from t", c); }), ErrorNumber::DatabaseError);
}

// The admin tool bulk-loads through database(); the adapter must see its tables.
TEST(Connection, TablesCreatedThroughTheQtConnectionAreFound)
{
    QTemporaryDir dir;
    ConnectionPtr c = createDb(dir.filePath("late.db"));
    EXPECT_THROW(rowsOf(c, "SELECT a FROM late"), RuntimeError);
    QSqlQuery q(c->database());
    ASSERT_TRUE(q.exec("CREATE TABLE late (a varchar(5) COLLATE CI_AS, d datetime)"));
    ASSERT_TRUE(q.exec("INSERT INTO late VALUES ('x ', '2024-01-02 03:04:05')"));
    EXPECT_EQ(rowsOf(c, "SELECT a, d FROM late WHERE a = 'X' AND d > '2024/1/2'"),
              (QList<QStringList>{{"x ", "2024-01-02 03:04:05"}}));
}

// The settings' connection text: names in quotes, login and password bare.
TEST(Connection, SettingsConnectionTextWrapsOnlyTheNames)
{
    EXPECT_EQ(buildConnectionString("srv01\\SQL", "wygl", "sa", "p w").toStdString(),
              "Provider=SQLOLEDB.1;Password=p w;Persist Security Info=False;User ID=sa;"
              "Initial Catalog='wygl';Data Source='srv01\\SQL'");
}
