// Outside tools write to the embedded database through the loadable
// extension, and the program still finds every row through its indexes.
#include "db/recordset.h"
#include "reports/officelist.h"
#include "session/dbconnection.h"
#include "session/session.h"
#include "session/signin.h"
#include "support/adminprocess.h"
#include "support/fixturedb.h"

#include <QFile>
#include <QProcess>
#include <QSqlQuery>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

QString extensionPath()
{
    return quorvale::testing::builtProgram(QStringLiteral("libquorvale_sqlite.so"));
}

QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        ADD_FAILURE() << program.toStdString() << " failed: " << process.errorString().toStdString()
                      << process.readAll().toStdString();
    return QString::fromUtf8(process.readAll()).trimmed();
}

// Keys differing from the program's lookups in case and trailing blanks, and
// enough neighbours that an index in any other order would miss them.
const char *const insertScript = R"py(
import sqlite3, sys
db = sqlite3.connect(sys.argv[1])
db.enable_load_extension(True)
db.load_extension(sys.argv[2])
db.executemany("INSERT INTO 员工档案 (工号, 姓名, 帐号密码) VALUES (?, ?, ?)",
               [(("u%03d" if i % 2 else "U%03d  ") % i, "员工%d" % i, "x") for i in range(300)])
db.executemany("INSERT INTO 设置管理处 (GYD_DH, GYD_Name, 商用物业, 对应部门代号) VALUES (?, ?, 0, ?)",
               [("O%d" % i, "管理处%d" % i, ("d%d" if i % 3 else "D%d ") % i) for i in range(300)])
db.executescript("""
INSERT INTO 员工档案 (工号, 姓名, 帐号密码) VALUES ('QV1 ', '外部用户', 'pw');
INSERT INTO 职能部门类别 VALUES ('Z9', '外部类');
INSERT INTO 职能部门new VALUES ('zd1', '外部部门', 'z9 ');
INSERT INTO 岗位类别 VALUES ('ZL1', '外部岗类');
INSERT INTO 岗位信息new VALUES ('ZG1', '外部岗位', 'ZD1 ', 'zl1');
INSERT INTO 岗位员工new (员工代号, 岗位代号, 主要岗位, 上岗日期) VALUES ('qv1', 'zg1', 1, '2024-01-01 00:00:00');
INSERT INTO 设置管理处 VALUES ('ZZ9', '外部管理处', 0, 'ZD1');
""")
db.commit()
print(db.execute("PRAGMA integrity_check").fetchone()[0])
)py";

TEST(SqliteExtension, RowsWrittenByPythonAreFoundByTheProgram)
{
    ASSERT_TRUE(QFile::exists(extensionPath())) << extensionPath().toStdString();
    FixtureDb db;
    EXPECT_EQ(run("/usr/bin/python3", {"-c", insertScript, db.path(), extensionPath()}), "ok");
    EXPECT_EQ(run("sqlite3", {db.path(), ".load " + extensionPath(),
                              "SELECT 工号 FROM 员工档案 WHERE 工号 = 'u001  '"}),
              "u001");

    db.writeSettings();
    Session session;
    ASSERT_TRUE(ConnectDatabase(session));
    const SignInResult signIn = verifyCredentials(session, "qv1", "pw");
    ASSERT_EQ(signIn.kind, SignInResult::Kind::Posts) << signIn.refusal.message.toStdString();
    ASSERT_EQ(signIn.posts.size(), 1);
    EXPECT_EQ(signIn.posts.first().postName, "外部岗位");

    Recordset offices;
    offices.Open(officeStatement(OfficeQueryStyle::Property, false, signIn.posts.first().deptCode),
                 session.DbConn);
    QStringList listed;
    for (; !offices.eof(); offices.MoveNext())
        listed << officeItemOf(offices).text;
    EXPECT_EQ(listed, QStringList{"ZZ9 外部管理处"});
    offices.Close();

    QSqlQuery check(session.DbConn->database());
    ASSERT_TRUE(check.exec("PRAGMA integrity_check") && check.next());
    EXPECT_EQ(check.value(0).toString(), "ok");
}

} // namespace
