// The snapshot against a real server through a real ODBC driver: a
// PostgreSQL server of the test's own, read through "PostgreSQL Unicode".
#include "db/connection.h"
#include "db/recordset.h"
#include "dbtools/embeddeddatabase.h"
#include "runtime/settings.h"
#include "runtime/vb.h"
#include "support/adminprocess.h"
#include "support/postgresserver.h"
#include "support/xlsxdump.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;
using quorvale::testing::PostgresServer;
using quorvale::testing::runAdmin;

namespace {

ConnectionPtr openOdbc(const QString &odbc)
{
    auto c = std::make_shared<Connection>();
    c->ConnectionString = Connection::odbcDataSourceConnectionString(odbc);
    c->Open();
    return c;
}

// Every row as Field texts, NULL marked apart from an empty text.
QList<QStringList> fieldTexts(const ConnectionPtr &connection, const QString &query)
{
    Recordset rs;
    rs.Open(query, connection);
    QList<QStringList> rows;
    for (; !rs.eof(); rs.MoveNext()) {
        QStringList row;
        for (int i = 0; i < rs.fieldCount(); ++i)
            row << (rs.Fields(i).isNull() ? QStringLiteral("<NULL>") : rs.Fields(i).text());
        rows << row;
    }
    return rows;
}

void configure(const QString &file)
{
    for (const auto &[key, value] :
         {std::pair{"Svr", embeddedServer(file)}, {"UID", "sa"}, {"PWD", "x"}, {"DBname", "demo"}})
        SettingsStore::SaveSetting("Quorvale", "DBConfig", key, value);
}

TEST(PostgresSnapshot, ReportsFromTheSnapshotEqualThoseOfTheOriginal)
{
    PostgresServer server;
    QTemporaryDir dir;
    const QString demo = dir.filePath("demo.db");
    const QString snapshot = dir.filePath("snapshot.db");
    ASSERT_EQ(runAdmin({"create-db", demo, "--demo"}).status, 0);
    server.createDatabase("wygl", demo);

    const auto copy = runAdmin({"snapshot", "--to", snapshot, "--from", server.odbc("wygl")});
    ASSERT_EQ(copy.status, 0) << copy.err.toStdString();
    const auto ledger =
        QRegularExpression("\\nWYZJ +(\\d+) +(\\d+)\\n").match(copy.out).capturedTexts();
    ASSERT_EQ(ledger.size(), 3) << copy.out.toStdString();
    EXPECT_EQ(ledger.at(1), ledger.at(2));
    EXPECT_EQ(
        ledger.at(1),
        fieldTexts(openEmbeddedDatabase(demo), "SELECT COUNT(*) FROM WYZJ").value(0).value(0));

    // Chinese text, amounts (some NULL) and dates: the same Field texts from
    // the server through ODBC as from the embedded engine.
    for (const char *query : {"SELECT ZJ_ID, ZJ_CNY, ZJ_JE, ZJ_SKRQ, 发票号码, 收款方式 FROM WYZJ "
                              "WHERE ZJ_ID <= 400 ORDER BY ZJ_ID",
                              "SELECT ZH_ID, 姓名, 进户日期, 说明 FROM 业主表 ORDER BY ZH_ID",
                              "SELECT 员工代号, 岗位代号, 主要岗位, 离岗日期 FROM 岗位员工new "
                              "ORDER BY 员工代号, 岗位代号"}) {
        SCOPED_TRACE(query);
        const auto fromServer = fieldTexts(openOdbc(server.odbc("wygl")), query);
        EXPECT_EQ(fromServer, fieldTexts(openEmbeddedDatabase(demo), query));
        EXPECT_FALSE(fromServer.isEmpty());
    }

    const QDate today = QDate::currentDate();
    const QString month = vbrt::formatYearMonth(today);
    const QString range = vbrt::formatYearMonth(today.addMonths(-11)) + ":" + month;
    const QString ahead = month + ":" + vbrt::formatYearMonth(today.addMonths(12));
    const QStringList finance = {"--user", "1002", "--password", "888888", "--post", "GW05"};
    const QStringList customer = {"--user", "1001", "--password", "123456"};
    const QList<QStringList> reports = {
        QStringList{"--report", "房产客户"} + customer,
        QStringList{"--report", "frm车位基础表"} + customer,
        QStringList{"--report", "财务数据欠收表房产", "--months", range} + finance,
        QStringList{"--report", "财务数据欠收表车位", "--months", range} + finance,
        QStringList{"--report", "财务数据预收表车位", "--months", ahead} + finance,
        QStringList{"--report", "财务数据预收表房产", "--months", ahead} + finance,
    };
    for (const QStringList &report : reports) {
        SCOPED_TRACE(report.at(1).toStdString());
        QJsonObject sheets[2];
        for (int i = 0; i < 2; ++i) {
            configure(i == 0 ? demo : snapshot);
            const QString book =
                dir.filePath(QStringLiteral("%1-%2.xlsx").arg(report.at(1)).arg(i));
            const auto run =
                runAdmin(QStringList{"export", "--office", "2", "--xlsx", book} + report);
            ASSERT_EQ(run.status, 0) << run.err.toStdString();
            sheets[i] = quorvale::testing::dumpWorkbook(book).value("data").toObject();
        }
        EXPECT_EQ(sheets[0], sheets[1]);
        qsizetype cells = 0;
        for (const QJsonValue &sheet : sheets[0])
            cells += sheet.toObject().value("cells").toObject().size();
        EXPECT_GT(cells, 40) << "the report has too few rows to compare";
    }
}

TEST(PostgresSnapshot, KeepsEveryValueAndNamesWhatTheSourceLacks)
{
    PostgresServer server;
    server.createDatabase("probe");
    server.psql(
        "probe",
        "INSERT INTO wyzj (zj_id, zh_id, zj_cny, zj_lx, zj_je, zj_skrq, 发票号码, 收款方式) "
        "VALUES (1, 7, '2024', '01', 1234.5678, '2024-03-31 10:11:12.567', NULL, '微信 '),"
        " (2, NULL, '202403', '02', -0.0001, '2024-03-31', 'A,\"B\"', ''),"
        " (3, 8, '202404', '03', NULL, NULL, 'FP 1', '银行转账');"
        "INSERT INTO 岗位员工new VALUES ('1001', 'GW01', true, '2020-01-01 08:30', NULL),"
        " ('1001', 'GW02', false, NULL, '2024-02-29 23:59:59');"
        "INSERT INTO 室表 VALUES (1, 1, '  0502', 85.50, NULL);");
    const QList<std::pair<QString, QList<QStringList>>> expected = {
        {"SELECT ZJ_ID, zh_ID, ZJ_CNY, ZJ_JE, ZJ_SKRQ, 发票号码, 收款方式 FROM WYZJ ORDER BY ZJ_ID",
         {{"1", "7", "2024  ", "1234.5678", "2024-03-31 10:11:12", "<NULL>", "微信 "},
          {"2", "<NULL>", "202403", "-0.0001", "2024-03-31", "A,\"B\"", ""},
          {"3", "8", "202404", "<NULL>", "<NULL>", "FP 1", "银行转账"}}},
        {"SELECT 岗位代号, 主要岗位, 上岗日期, 离岗日期 FROM 岗位员工new ORDER BY 岗位代号",
         {{"GW01", "1", "2020-01-01 08:30:00", "<NULL>"},
          {"GW02", "0", "<NULL>", "2024-02-29 23:59:59"}}},
        {"SELECT 室, 建筑面积, 房屋性质 FROM 室表", {{"  0502", "85.5", "<NULL>"}}},
    };
    QTemporaryDir dir;
    const QString file = dir.filePath("probe.db");
    const auto copy = runAdmin({"snapshot", "--to", file, "--from", server.odbc("probe")});
    ASSERT_EQ(copy.status, 0) << copy.err.toStdString();
    const ConnectionPtr source = openOdbc(server.odbc("probe"));
    const ConnectionPtr target = openEmbeddedDatabase(file);
    for (const auto &[query, rows] : expected) {
        SCOPED_TRACE(query.toStdString());
        EXPECT_EQ(fieldTexts(source, query), rows);
        EXPECT_EQ(fieldTexts(target, query), rows);
    }

    // The four settings name the server too, the settings filling in what the
    // ODBC string leaves out: sql sends it statements as they stand, and a
    // snapshot without --from reads it.
    for (const auto &[key, value] :
         {std::pair{"Svr", "odbc:" + server.odbc()}, {"UID", "quorvale"}, {"DBname", "probe"}})
        SettingsStore::SaveSetting("Quorvale", "DBConfig", key, value);
    const auto update = runAdmin({"sql", "-e", "UPDATE wyzj SET zj_lx = '09' WHERE zj_id = 3"});
    EXPECT_EQ(update.out, "(1 row affected)\n") << update.err.toStdString();
    const auto csv =
        runAdmin({"sql", "--csv", "-e", "SELECT zj_id, zj_lx, 收款方式 FROM wyzj ORDER BY zj_id"});
    EXPECT_EQ(csv.out.toStdString(),
              "zj_id,zj_lx,收款方式\r\n1,01,\"微信 \"\r\n2,02,\"\"\r\n3,09,银行转账\r\n");
    const auto again = runAdmin({"snapshot", "--to", file});
    EXPECT_EQ(again.status, 4);
    EXPECT_TRUE(again.err.contains("--force")) << again.err.toStdString();
    ASSERT_EQ(runAdmin({"snapshot", "--to", file, "--force"}).status, 0);
    EXPECT_EQ(fieldTexts(openEmbeddedDatabase(file), "SELECT ZJ_LX FROM WYZJ WHERE ZJ_ID = 3"),
              QList<QStringList>{{"09"}});

    const struct {
        const char *change;
        const char *message;
    } failures[] = {
        // Each change breaks a table copied before the one the change above it broke.
        {"ALTER TABLE wyzj DROP COLUMN 发票号码", "column WYZJ.发票号码 is missing on the source"},
        {"DROP TABLE 车位产权", "table 车位产权 is missing on the source"},
        // Different keys on PostgreSQL, one key under the embedded engine's collation.
        {"INSERT INTO fwxzk VALUES ('A', 'x'), ('a ', 'y')", "FWXZK"},
    };
    for (const auto &failure : failures) {
        SCOPED_TRACE(failure.change);
        server.psql("probe", failure.change);
        const QString refused = dir.filePath("refused.db");
        const auto run = runAdmin({"snapshot", "--to", refused, "--from", server.odbc("probe")});
        EXPECT_EQ(run.status, 4);
        EXPECT_TRUE(run.err.contains(failure.message)) << run.err.toStdString();
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"probe.db"});
    }
}

} // namespace
