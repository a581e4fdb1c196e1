#include "runtime/runtimeerror.h"
#include "support/adminprocess.h"
#include "support/files.h"
#include "support/fixturedb.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;
using quorvale::testing::runAdmin;

namespace {

class AdminSql : public ::testing::Test {
  protected:
    void SetUp() override { db.writeSettings(); }

    QString scriptFile(const QString &text)
    {
        quorvale::testing::writeBytes(dir.filePath("script.sql"), text.toUtf8());
        return dir.filePath("script.sql");
    }

    FixtureDb db;
    QTemporaryDir dir;
};

TEST_F(AdminSql, QueryAsAlignedTableAndAsCsv)
{
    db.insertRows("设置管理处", {"GYD_DH", "GYD_Name", "商用物业", "对应部门代号"},
                  {{"2", "幸福里花园", 0, "D1"},
                   {"3", "翠湖苑\n二期", 1, QVariant()},
                   {"10", "阳,光\"城", QVariant(), ""}});
    const QString query = "SELECT GYD_DH, GYD_Name, 商用物业, 对应部门代号 FROM 设置管理处 "
                          "ORDER BY len(GYD_DH), GYD_DH";
    const auto table = runAdmin({"sql", "-e", query});
    ASSERT_EQ(table.status, 0) << table.err.toStdString();
    // Chinese characters take two columns; numbers and their NULLs align right.
    EXPECT_EQ(table.out.toStdString(), "GYD_DH  GYD_Name     商用物业  对应部门代号\n"
                                       "------  -----------  --------  ------------\n"
                                       "2       幸福里花园          0  D1\n"
                                       "3       翠湖苑 二期         1  NULL\n"
                                       "10      阳,光\"城         NULL\n"
                                       "(3 rows)\n\n");

    const auto csv = runAdmin({"sql", "--csv", "-e", query});
    ASSERT_EQ(csv.status, 0) << csv.err.toStdString();
    EXPECT_EQ(csv.out.toStdString(), "GYD_DH,GYD_Name,商用物业,对应部门代号\r\n"
                                     "2,幸福里花园,0,D1\r\n"
                                     "3,\"翠湖苑\n二期\",1,\r\n"
                                     "10,\"阳,光\"\"城\",,\"\"\r\n");
}

TEST_F(AdminSql, BatchesRunInOrderAndReportRowsAffected)
{
    const auto run = runAdmin({"sql", "-f",
                               scriptFile("INSERT INTO FWXZK VALUES ('01', N'住宅')\n"
                                          "INSERT INTO FWXZK VALUES ('02', N'商铺')\n"
                                          "go\n"
                                          "CREATE TABLE 临时 (a int)\n"
                                          "  GO  \r\n"
                                          "UPDATE FWXZK SET FWXZ_xz = N'别墅'\n"
                                          "SELECT COUNT(*) AS n FROM 临时\n")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out.toStdString(), "(1 row affected)\n(1 row affected)\n(2 rows affected)\n"
                                     "n\n-\n0\n(1 row)\n\n");
    EXPECT_EQ(db.rows("SELECT FWXZ_dh, FWXZ_xz FROM FWXZK ORDER BY FWXZ_dh"),
              (QList<QStringList>{{"01", "别墅"}, {"02", "别墅"}}));
}

TEST_F(AdminSql, AFailingScriptNamesBatchAndLineAndChangesNothing)
{
    const QString start = "INSERT INTO FWXZK VALUES ('01', N'住宅')\n" // line 1
                          "GO\n"
                          "CREATE TABLE 临时 (a int)\n" // line 3
                          "INSERT INTO 临时 VALUES (1)\n"
                          "GO\n";
    const struct {
        const char *name;
        const char *rest; // from line 6, batch 3
        const char *message;
    } cases[] = {
        {"unknown column on the batch's second line", "\nSELECT a,\n nosuch FROM 临时\n",
         "batch 3, line 8: Invalid column name 'nosuch'"},
        {"duplicate key in the batch's second statement",
         "UPDATE 临时 SET a = 2\nINSERT INTO FWXZK VALUES ('01 ', N'重复')\n",
         "batch 3, line 7: UNIQUE constraint failed: FWXZK.FWXZ_dh"},
        {"unterminated literal", "GO\n\nSELECT 'open\n", "batch 3, line 8: Incorrect syntax"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const auto run = runAdmin({"sql", "-f", scriptFile(start + c.rest)});
        EXPECT_EQ(run.status, 4);
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
        EXPECT_EQ(db.scalar("SELECT COUNT(*) FROM FWXZK"), "0");
        EXPECT_THROW(db.rows("SELECT a FROM 临时"), RuntimeError);
    }
    for (const QStringList &arguments :
         {QStringList{"sql"}, QStringList{"sql", "-e"}, QStringList{"sql", "-x", "SELECT 1"}})
        EXPECT_EQ(runAdmin(arguments).status, 2) << arguments.join(' ').toStdString();
}

} // namespace
