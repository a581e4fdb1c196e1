// SQL Server through ODBC. The real-server test runs only when the
// environment variable QUORVALE_TEST_MSSQL names a server, as
//     QUORVALE_TEST_MSSQL="host[,port];user;password;database"
// (for example "db01,1433;sa;secret;wygl"); otherwise it is skipped.
#include "db/connection.h"
#include "db/odbcconnectionstring.h"
#include "db/recordset.h"
#include "runtime/runtimeerror.h"

#include <gtest/gtest.h>

using namespace quorvale;

namespace {

AdoConnectionValues values(const QString &server)
{
    AdoConnectionValues v;
    v.password = QStringLiteral("pa;ss");
    v.userId = QStringLiteral("sa");
    v.initialCatalog = QStringLiteral("物业");
    v.dataSource = server;
    return v;
}

} // namespace

TEST(AdoConnectionString, ValuesAsTheConnectionBuildsThem)
{
    const AdoConnectionValues v =
        parseAdoConnectionString(QStringLiteral("Provider=SQLOLEDB.1;Password=p w;Persist Security "
                                                "Info=False;User ID=sa;Initial Catalog='wy''gl';"
                                                "Data Source='db01\\SQL2019'"));
    EXPECT_EQ(v.provider, "SQLOLEDB.1");
    EXPECT_EQ(v.password, "p w");
    EXPECT_EQ(v.userId, "sa");
    EXPECT_EQ(v.initialCatalog, "wy'gl");
    EXPECT_EQ(v.dataSource, "db01\\SQL2019");
    // All four settings missing: empty values, the quotes still there.
    const AdoConnectionValues empty = parseAdoConnectionString(
        QStringLiteral("Provider=SQLOLEDB.1;Password=;Persist Security Info=False;User ID=;Initial "
                       "Catalog='';Data Source=''"));
    EXPECT_TRUE(empty.password.isEmpty() && empty.userId.isEmpty() &&
                empty.initialCatalog.isEmpty() && empty.dataSource.isEmpty());
    EXPECT_THROW(parseAdoConnectionString("Data Source='a'b';User ID=x"), RuntimeError);
    EXPECT_THROW(parseAdoConnectionString("Data Source='abc"), RuntimeError);
    EXPECT_THROW(parseAdoConnectionString("Password=pa;ss;User ID=x"), RuntimeError);
}

TEST(OdbcConnectionString, ServerFormsForEachDriver)
{
    const struct {
        const char *server;
        const char *driver;
        const char *serverPart; // what stands between the driver and the credentials
    } cases[] = {
        {"db01,1533", "ODBC Driver 17 for SQL Server", "SERVER=db01,1533;"},
        {"db01\\SQL2019", "SQL Server", "SERVER=db01\\SQL2019;"},
        {"(local)", "SQL Server", "SERVER=localhost;"},
        {"db01", "FreeTDS", "SERVER=db01;PORT=1433;TDS_Version=7.4;ClientCharset=UTF-8;"},
        {"10.1.2.3, 1533", "FreeTDS",
         "SERVER=10.1.2.3;PORT=1533;TDS_Version=7.4;ClientCharset=UTF-8;"},
        {"db01\\SQL2019", "FreeTDS", "SERVER=db01\\SQL2019;TDS_Version=7.4;ClientCharset=UTF-8;"},
        {"tcp:db01,1433", "FreeTDS", "SERVER=db01;PORT=1433;TDS_Version=7.4;ClientCharset=UTF-8;"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(
            odbcConnectionString(values(QString::fromUtf8(c.server)), QString::fromUtf8(c.driver))
                .toStdString(),
            QString("DRIVER={%1};%2UID=sa;PWD={pa;ss};DATABASE=物业;APP=Quorvale")
                .arg(QString::fromUtf8(c.driver), QString::fromUtf8(c.serverPart))
                .toStdString());
    // Driver 18 alone is told to accept the servers' self-signed certificates.
    EXPECT_EQ(odbcConnectionString(values("db01"), "ODBC Driver 18 for SQL Server").toStdString(),
              "DRIVER={ODBC Driver 18 for SQL Server};SERVER=db01;UID=sa;PWD={pa;ss};DATABASE=物业;"
              "TrustServerCertificate=yes;APP=Quorvale");
}

TEST(OdbcConnectionString, DriverPreference)
{
    using L = QStringList;
    EXPECT_EQ(chooseSqlServerDriver(L{"FreeTDS", "SQL Server", "ODBC Driver 17 for SQL Server",
                                      "ODBC Driver 18 for SQL Server"}),
              "ODBC Driver 18 for SQL Server");
    EXPECT_EQ(chooseSqlServerDriver(L{"FreeTDS", "ODBC Driver 17 for SQL Server", "SQL Server"}),
              "ODBC Driver 17 for SQL Server");
    EXPECT_EQ(chooseSqlServerDriver(L{"ODBC Driver 13 for SQL Server",
                                      "ODBC Driver 11 for SQL Server", "SQL Server"}),
              "ODBC Driver 13 for SQL Server");
    EXPECT_EQ(chooseSqlServerDriver(L{"PostgreSQL Unicode", "SQL Server", "FreeTDS"}),
              "SQL Server");
    EXPECT_EQ(chooseSqlServerDriver(L{"MySQL", "FreeTDS"}), "FreeTDS");
    EXPECT_EQ(chooseSqlServerDriver(L{"MySQL", "SQLite3"}), QString());
}

TEST(OdbcConnectionString, OdbcDataSourcesAsTheyStand)
{
    const struct {
        const char *dataSource;
        const char *userId;
        const char *password;
        const char *catalog;
        const char *expected; // what QODBC is given
    } cases[] = {
        {"DRIVER={PostgreSQL Unicode};Servername=/tmp/pg;Database=wygl", "", "", "",
         "DRIVER={PostgreSQL Unicode};Servername=/tmp/pg;Database=wygl"},
        // The settings fill in what the string leaves out, never what it names.
        {"DRIVER={PostgreSQL Unicode};Servername=db01;", "report", "p;w", "wygl",
         "DRIVER={PostgreSQL Unicode};Servername=db01;UID=report;PWD={p;w};DATABASE=wygl"},
        {"Driver={X};uid=me;Password={a;b=c};initial catalog=q", "sa", "secret", "other",
         "Driver={X};uid=me;Password={a;b=c};initial catalog=q"},
        // A braced value holding a key's name is not that key.
        {"DRIVER={X};Extra={UID=x;PWD=y}", "sa", "", "", "DRIVER={X};Extra={UID=x;PWD=y};UID=sa"},
        // QODBC puts "DSN=" back before a string without DRIVER or SERVER.
        {"DSN=company;Database=wygl", "", "", "", "company;Database=wygl"},
    };
    for (const auto &c : cases) {
        AdoConnectionValues v;
        v.userId = QString::fromUtf8(c.userId);
        v.password = QString::fromUtf8(c.password);
        v.initialCatalog = QString::fromUtf8(c.catalog);
        EXPECT_EQ(qodbcDatabaseName(completedOdbcConnectionString(c.dataSource, v)).toStdString(),
                  c.expected);
    }
    // The data source survives the ADO string's own quoting.
    const QString odbc = "DRIVER={PostgreSQL Unicode};Servername=/tmp/o'k;PWD={x;y}";
    EXPECT_EQ(parseAdoConnectionString(Connection::odbcDataSourceConnectionString(odbc)).dataSource,
              "odbc:" + odbc);
    EXPECT_EQ(
        streamingOdbcConnectionString("DRIVER={PostgreSQL Unicode};Servername=h").toStdString(),
        "DRIVER={PostgreSQL Unicode};Servername=h;UseDeclareFetch=1;Fetch=2000");
    for (const char *unchanged : {"DRIVER={PostgreSQL Unicode};UseDeclareFetch=0",
                                  "DRIVER={ODBC Driver 18 for SQL Server};SERVER=postgresql01"})
        EXPECT_EQ(streamingOdbcConnectionString(unchanged).toStdString(), unchanged);
}

TEST(OdbcConnection, OdbcDataSourceReachesItsDriver)
{
    Connection c;
    c.ConnectionString = Connection::odbcDataSourceConnectionString(
        "DRIVER={PostgreSQL Unicode};Servername=/nonexistent-quorvale;Port=5432;Database=x");
    c.ConnectionTimeout = 3;
    try {
        c.Open();
        FAIL() << "opened a server that does not exist";
    } catch (const RuntimeError &e) {
        // libpq's own words, through psqlODBC: the string reached that driver.
        EXPECT_TRUE(e.description().contains("/nonexistent-quorvale")) << e.what();
    }
    EXPECT_FALSE(c.isOpen());
}

// A server that does not answer fails the open with the driver's own words.
TEST(OdbcConnection, UnreachableServerFailsWithDriverText)
{
    if (chooseSqlServerDriver(installedOdbcDrivers()).isEmpty())
        FAIL() << "no SQL Server ODBC driver installed (scripts/install-deps.sh installs FreeTDS)";
    // Port 1 (tcpmux) is closed on any ordinary machine.
    const int closedPort = 1;
    Connection c;
    c.ConnectionString =
        QStringLiteral("Provider=SQLOLEDB.1;Password=x;Persist Security Info=False;User ID=sa;"
                       "Initial Catalog='wygl';Data Source='127.0.0.1,%1'")
            .arg(closedPort);
    c.ConnectionTimeout = 3;
    try {
        c.Open();
        FAIL() << "opened a closed port";
    } catch (const RuntimeError &e) {
        EXPECT_EQ(e.number(), ErrorNumber::DatabaseError);
        EXPECT_FALSE(e.description().trimmed().isEmpty());
        EXPECT_TRUE(e.description().contains(QLatin1String("connect"), Qt::CaseInsensitive) ||
                    e.description().contains(QLatin1String("server"), Qt::CaseInsensitive))
            << e.what();
    }
    EXPECT_FALSE(c.isOpen());
}

TEST(OdbcConnection, RealServerRoundTripsChineseText)
{
    const QString target = qEnvironmentVariable("QUORVALE_TEST_MSSQL");
    if (target.isEmpty())
        GTEST_SKIP() << "set QUORVALE_TEST_MSSQL=\"host[,port];user;password;database\" to test "
                        "against a SQL Server";
    const QStringList parts = target.split(QLatin1Char(';'));
    ASSERT_EQ(parts.size(), 4) << "QUORVALE_TEST_MSSQL must be host[,port];user;password;database";
    auto c = std::make_shared<Connection>();
    c->ConnectionString =
        QStringLiteral("Provider=SQLOLEDB.1;Password=%1;Persist Security Info=False;User ID=%2;"
                       "Initial Catalog='%3';Data Source='%4'")
            .arg(parts.at(2), parts.at(1), parts.at(3), parts.at(0));
    c->ConnectionTimeout = 30;
    c->Open();
    EXPECT_FALSE(c->isEmbedded());
    c->Execute("IF OBJECT_ID('tempdb..#测试') IS NOT NULL DROP TABLE #测试");
    c->Execute(QStringLiteral(
        "CREATE TABLE #测试 (编号 int, 名称 nvarchar(20), 日期 datetime, 金额 money, 标记 bit)"));
    c->Execute("INSERT INTO #测试 VALUES (1, N'东城管理处', '2024/3/31', 85.50, 1)");
    Recordset rs;
    rs.Open(QStringLiteral("SELECT 编号, 名称, 日期, 金额, 标记, NULL AS 空 FROM #测试 WHERE 名称 "
                           "= N'东城管理处 '"),
            c);
    ASSERT_FALSE(rs.eof());
    EXPECT_EQ(rs.Fields("名称").text(), "东城管理处");
    EXPECT_EQ(rs.Fields("日期").text(), "2024-03-31");
    EXPECT_EQ(rs.Fields("金额").text(), "85.5");
    EXPECT_EQ(rs.Fields("标记").text(), "1");
    EXPECT_EQ(rs.Fields("编号").text(), "1");
    EXPECT_TRUE(rs.Fields("空").isNull());
}
