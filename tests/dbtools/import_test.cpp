#include "support/adminprocess.h"
#include "support/files.h"
#include "support/fixturedb.h"

#include <QSqlQuery>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;
using quorvale::testing::runAdmin;

namespace {

class AdminImport : public ::testing::Test {
  protected:
    void SetUp() override { db.writeSettings(); }

    QString csvFile(const QByteArray &bytes, const QString &name = "wyzj.csv")
    {
        quorvale::testing::writeBytes(dir.filePath(name), bytes);
        return dir.filePath(name);
    }

    // The stored value and its SQLite type, as other tools see the file.
    QStringList stored(const QString &sql)
    {
        QSqlQuery query(db.connection()->database());
        EXPECT_TRUE(query.exec(sql));
        QStringList values;
        while (query.next())
            values << query.value(0).toString() + "|" + query.value(1).toString();
        return values;
    }

    FixtureDb db;
    QTemporaryDir dir;
};

TEST_F(AdminImport, ConvertsEachValueByItsColumnsType)
{
    const auto run =
        runAdmin({"import", "--table", "wyzj",
                  csvFile("\xEF\xBB\xBFZJ_ID,zh_id,ZJ_CNY,ZJ_LX,ZJ_JE,ZJ_SKRQ,收款方式\r\n"
                          "1,7,2024,01,1234.5678,2024/3/5 9:07,微信\r\n"
                          "2,,202403,02,-0.10,20240331,\"\"\r\n"
                          "\r\n"
                          "3,8,202404,03,120.0000,,\"银行,\n\"\"转账\"\"\"\n")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, "3 rows imported into wyzj\n");
    EXPECT_EQ(db.rows("SELECT ZJ_ID, zh_ID, ZJ_CNY, ZJ_JE, ZJ_SKRQ, 收款方式 FROM WYZJ "
                      "ORDER BY ZJ_ID"),
              (QList<QStringList>{{"1", "7", "2024  ", "1234.5678", "2024-03-05 09:07:00", "微信"},
                                  {"2", "", "202403", "-0.1", "2024-03-31", ""},
                                  {"3", "8", "202404", "120", "", "银行,\n\"转账\""}}));
    // NULL only where the field was unquoted and empty.
    EXPECT_EQ(stored("SELECT typeof(ZJ_JE), typeof(收款方式) FROM WYZJ ORDER BY ZJ_ID"),
              (QStringList{"real|text", "real|text", "integer|text"}));
    EXPECT_EQ(stored("SELECT typeof(zh_ID), ZJ_SKRQ FROM WYZJ WHERE ZJ_ID = 2"),
              QStringList{"null|2024-03-31 00:00:00"});
}

TEST_F(AdminImport, ABadValueIsRefusedWithLineColumnAndReasonAndNothingIsWritten)
{
    const QByteArray header = "ZJ_ID,ZJ_CNY,ZJ_LX,ZJ_JE,ZJ_SKRQ\n1,202401,01,85.5,2024-01-31\n";
    const struct {
        QByteArray body; // line 3 onwards
        const char *message;
    } cases[] = {
        {"2,202401,01,12.34567,2024-01-31\n",
         "wyzj.csv line 3, column 4 (ZJ_JE): '12.34567' has more than 4 decimal places for money"},
        {"2,202401,01,abc,2024-01-31\n", "line 3, column 4 (ZJ_JE): 'abc' is not a number"},
        {"2,202401,01,1,2024-02-30\n",
         "line 3, column 5 (ZJ_SKRQ): '2024-02-30' is not a date and time"},
        {"2.5,202401,01,1,\n", "line 3, column 1 (ZJ_ID): '2.5' is not a whole number"},
        {"3000000000,202401,01,1,\n", "line 3, column 1 (ZJ_ID): '3000000000' is out of range"},
        {"2,2024011,01,1,\n", "line 3, column 2 (ZJ_CNY): '2024011' is longer than the 6"},
        {"2,,01,1,\n", "line 3, column 2 (ZJ_CNY): a value is required"},
        {"1,202401,01,1,\n", "line 3: WYZJ: UNIQUE constraint failed: WYZJ.ZJ_ID"},
        {"2,202401,01\n", "line 3: 3 fields where the header names 5"},
        {"2,\"2024\"01,01,1,\n", "line 3, column 2: text after the closing quote"},
        {"2,\"202401,01,1,\n", "line 3, column 2: the quoted field is not closed"},
        {"2,2024\xff,01,1,\n", "line 3, column 2: the text is not UTF-8"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.message);
        const auto run = runAdmin({"import", "--table", "WYZJ", csvFile(header + c.body)});
        EXPECT_EQ(run.status, 4);
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.message))) << run.err.toStdString();
        EXPECT_EQ(db.scalar("SELECT COUNT(*) FROM WYZJ"), "0");
    }
    const struct {
        QStringList arguments;
        const char *message;
    } refused[] = {
        {{"import", "--table", "WYZJ", csvFile("ZJ_ID,收费\n")},
         "wyzj.csv line 1, column 2: 收费 is not a column of WYZJ"},
        {{"import", "--table", "WYZJ", csvFile("ZJ_ID,zj_id\n", "twice.csv")},
         "twice.csv line 1, column 2: ZJ_ID is named twice"},
        {{"import", "--table", "无此表", csvFile("a\n", "none.csv")}, "no table 无此表"},
        {{"import", "--table", "WYZJ", dir.filePath("missing.csv")}, "cannot open"},
    };
    for (const auto &c : refused) {
        const auto run = runAdmin(c.arguments);
        EXPECT_EQ(run.status, 4);
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.message))) << run.err.toStdString();
    }
    EXPECT_EQ(runAdmin({"import", "x.csv"}).status, 2);
}

} // namespace
