// The batch export as a careless administrator and a busy scheduler use it:
// each probe checks the exit status and message and, above all, that no file
// was lost, damaged or half-written.
#include "runtime/settings.h"
#include "runtime/writerlock.h"
#include "support/adminprocess.h"
#include "support/files.h"
#include "support/fixturedb.h"
#include "support/xlsxdump.h"
#include "xlsx/xlsxworkbook.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

using namespace quorvale;
using quorvale::testing::builtProgram;
using quorvale::testing::bytesOf;
using quorvale::testing::dumpWorkbook;
using quorvale::testing::ProcessRun;
using quorvale::testing::runWorkbookTool;
using quorvale::testing::writeBytes;

namespace {

// Files other than the ones a case expects: temporaries, locks, backups.
QStringList leftovers(const QString &folder, const QStringList &expected)
{
    QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &name : expected)
        names.removeAll(name);
    return names;
}

ProcessRun finish(QProcess &process)
{
    process.waitForFinished(180000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

// quorvale-admin under a shell, for limits and arguments QProcess cannot pass.
ProcessRun runInShell(const QString &prefix, const QStringList &arguments)
{
    QProcess process;
    process.start("bash", QStringList{"-c", prefix + "; exec \"$0\" \"$@\""} +
                              QStringList{builtProgram("quorvale-admin")} + arguments);
    return finish(process);
}

class ExportFaults : public ::testing::Test {
  protected:
    void SetUp() override
    {
        db.loadDemo(QDate::currentDate());
        db.writeSettings();
        book = out.filePath("book.xlsx");
        pdf = out.filePath("book.pdf");
    }

    QStringList exportArgs(const QString &xlsx, const QStringList &more = {}) const
    {
        return QStringList{"export", "--report", "房产客户", "--office", "2", "--user", "1001",
                           "--password", "123456", "--xlsx", xlsx} +
               more;
    }
    ProcessRun exportTo(const QString &xlsx, const QStringList &more = {}) const
    {
        return quorvale::testing::runAdmin(exportArgs(xlsx, more));
    }
    // A good workbook and PDF from an earlier run, which every failure must keep.
    void earlierOutputs()
    {
        ASSERT_EQ(exportTo(book, {"--pdf", pdf}).status, 0);
        bookBefore = bytesOf(book);
        pdfBefore = bytesOf(pdf);
    }

    FixtureDb db;
    QTemporaryDir out;
    QString book, pdf;
    QByteArray bookBefore, pdfBefore;
};

TEST_F(ExportFaults, AnOutputNeverReplacesAnotherOutputOrAnInput)
{
    earlierOutputs();
    const QByteArray database = bytesOf(db.path());
    QFile::link(book, out.filePath("link.xlsx"));
    const struct {
        const char *name;
        QString xlsx, pdf;
    } cases[] = {
        {"same file", book, book},
        {"same file through ./ and ..", book, out.path() + "/./sub/../book.xlsx"},
#ifndef Q_OS_WIN // a link made there is a shortcut, a file of its own
        {"same file through a symbolic link", book, out.filePath("link.xlsx")},
#endif
        {"PDF over the database", book, db.path()},
        {"workbook over the database", db.path(), pdf},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const ProcessRun run = exportTo(c.xlsx, {"--pdf", c.pdf});
        EXPECT_EQ(run.status, 2) << run.err.toStdString();
        EXPECT_TRUE(bytesOf(book) == bookBefore) << "book changed";
        EXPECT_TRUE(bytesOf(pdf) == pdfBefore) << "pdf changed";
        EXPECT_EQ(bytesOf(db.path()), database);
    }
}

TEST_F(ExportFaults, ADiskThatFillsUpChangesNothingAndSaysWhy)
{
    earlierOutputs();
    // The file-size limit makes every write past it fail, as a full disk
    // does: part-way through the PDF, or from its very first byte (the
    // arrears report prints before its workbook is written).
    const struct {
        const char *limit, *report;
    } cases[] = {{"16", "房产客户"}, {"0", "财务数据欠收表房产"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.limit);
        QStringList args = exportArgs(book, {"--pdf", pdf});
        args.replace(args.indexOf("房产客户"), c.report);
        const ProcessRun run = runInShell(QString("ulimit -f %1; trap '' XFSZ").arg(c.limit), args);
        EXPECT_EQ(run.status, 4) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains("File too large")) << run.err.toStdString();
        EXPECT_TRUE(bytesOf(pdf) == pdfBefore) << "pdf changed";
        EXPECT_TRUE(bytesOf(book) == bookBefore) << "book changed";
        EXPECT_EQ(leftovers(out.path(), {"book.xlsx", "book.pdf"}), QStringList());
    }
}

TEST_F(ExportFaults, WorkbookAndPdfSucceedOrFailTogether)
{
    earlierOutputs();
    const struct {
        const char *name;
        QString pdf;
        const char *message;
    } cases[] = {
        {"PDF target is a folder", out.filePath("folder.pdf"), "文件夹"},
        {"PDF folder is missing", out.filePath("missing/book.pdf"), "不存在"},
    };
    QDir(out.path()).mkdir("folder.pdf");
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const ProcessRun run = exportTo(book, {"--sheet", "新表", "--pdf", c.pdf});
        EXPECT_EQ(run.status, 4);
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.message))) << run.err.toStdString();
        EXPECT_FALSE(run.err.contains("Printer error")) << run.err.toStdString();
        EXPECT_TRUE(bytesOf(book) == bookBefore) << "book changed";
        EXPECT_EQ(leftovers(out.path(), {"book.xlsx", "book.pdf"}), QStringList());
    }
}

// Folders and files named in Chinese, as the finance department names them:
// written, written again in place, and named in a failure's message.
TEST_F(ExportFaults, ChineseFolderAndFileNamesWork)
{
    ASSERT_TRUE(QDir(out.path()).mkpath("财务/2026年11月"));
    const QString folder = out.filePath("财务/2026年11月");
    const QString xlsx = folder + "/收款日报表.xlsx", pdf = folder + "/收款日报表.pdf";
    int sheets = 0;
    for (int run = 1; run <= 2; ++run) {
        SCOPED_TRACE(run);
        const ProcessRun done = exportTo(xlsx, {"--pdf", pdf});
        ASSERT_EQ(done.status, 0) << done.err.toStdString();
        EXPECT_EQ(leftovers(folder, {"收款日报表.xlsx", "收款日报表.pdf"}), QStringList());
        EXPECT_TRUE(bytesOf(pdf).startsWith("%PDF"));
        const auto book = xlsx::Workbook::open(xlsx);
        if (run == 1)
            sheets = book->worksheetCount();
        EXPECT_EQ(book->worksheetCount(), sheets) << "the second run rewrites its sheet";
    }
    const ProcessRun refused = exportTo(xlsx, {"--pdf", folder + "/缺少的文件夹/收款日报表.pdf"});
    EXPECT_EQ(refused.status, 4);
    EXPECT_TRUE(refused.err.contains("缺少的文件夹")) << refused.err.toStdString();
}

TEST_F(ExportFaults, TwoRunsIntoOneWorkbookKeepBothSheets)
{
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        QFile::remove(book);
        ASSERT_EQ(exportTo(book).status, 0);
        QProcess first, second;
        first.start(builtProgram("quorvale-admin"), exportArgs(book, {"--sheet", "甲"}));
        second.start(builtProgram("quorvale-admin"), exportArgs(book, {"--sheet", "乙"}));
        const ProcessRun a = finish(first), b = finish(second);
        ASSERT_EQ(a.status, 0) << a.err.toStdString();
        ASSERT_EQ(b.status, 0) << b.err.toStdString();
        const QJsonArray sheets = dumpWorkbook(book).value("sheets").toArray();
        EXPECT_TRUE(sheets.contains(QJsonValue("甲")) && sheets.contains(QJsonValue("乙")))
            << QJsonDocument(sheets).toJson().toStdString();
    }
    // Excel's owner file beside the workbook means the user has it open.
    QFile owner(out.filePath("~$book.xlsx"));
    ASSERT_TRUE(owner.open(QIODevice::WriteOnly));
    owner.close();
    const QByteArray before = bytesOf(book);
    const ProcessRun run = exportTo(book, {"--sheet", "丙"});
    EXPECT_EQ(run.status, 4);
    EXPECT_TRUE(run.err.contains("Excel")) << run.err.toStdString();
    EXPECT_TRUE(bytesOf(book) == before) << "book changed";
}

TEST_F(ExportFaults, RewritingASheetReplacesItsOldRowsAndKeepsWhatLiesOutside)
{
    const QStringList finance = {"export", "--report", "财务数据欠收表房产", "--office", "2",
                                 "--user", "1002", "--password", "888888", "--post", "GW05",
                                 "--xlsx", book, "--sheet", "欠收"};
    ASSERT_EQ(quorvale::testing::runAdmin(finance).status, 0);
    // The user's own notes: right of the exported columns, and far below its rows.
    runWorkbookTool({"note", book, "欠收", "Z1", "备注"});
    runWorkbookTool({"note", book, "欠收", "A500", "合计见上"});
    runWorkbookTool({"note", book, "欠收", "Z500", "合计见上"});
    const ProcessRun empty =
        quorvale::testing::runAdmin(finance + QStringList{"--month", "199001"});
    ASSERT_EQ(empty.status, 0) << empty.err.toStdString();
    ASSERT_TRUE(empty.out.contains("wrote 0 rows")) << empty.out.toStdString();

    const QJsonObject cells =
        dumpWorkbook(book).value("data").toObject().value("欠收").toObject().value("cells").toObject();
    EXPECT_EQ(cells.value("A1").toObject().value("value").toString(), "房号");
    // The block is the old header's columns down to the last used row.
    for (const char *gone : {"A2", "B2", "O2", "A73", "O73", "A500"}) {
        const QJsonValue value = cells.value(gone).toObject().value("value");
        EXPECT_TRUE(value.isNull() || value.isUndefined()) << gone;
    }
    EXPECT_EQ(cells.value("Z1").toObject().value("value").toString(), "备注");
    EXPECT_EQ(cells.value("Z500").toObject().value("value").toString(), "合计见上");
}

TEST_F(ExportFaults, DamagedWorkbooksAreRefusedByPartAndLeftAlone)
{
    const struct {
        const char *mode;
        const char *message;
    } cases[] = {
        {"damage-malformed-strings", "xl/sharedStrings.xml"},
        {"damage-missing-strings", "xl/sharedStrings.xml"},
        {"damage-bomb", "xl/sharedStrings.xml"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.mode);
        QFile::remove(book);
        // The export writes its texts inline; a workbook made elsewhere has the table.
        runWorkbookTool({"shape", "shared-strings", book});
        runWorkbookTool({c.mode, book});
        const QByteArray damaged = bytesOf(book);
        const ProcessRun run = exportTo(book, {"--sheet", "另一张"});
        EXPECT_EQ(run.status, 4) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
        EXPECT_TRUE(bytesOf(book) == damaged) << "book changed";
    }
}

TEST_F(ExportFaults, MessagesNameTheRealCause)
{
    const QString junk = out.filePath("junk.db"), empty = out.filePath("empty.db"),
                  truncated = out.filePath("truncated.db");
    writeBytes(junk, QByteArray(8192, '\x5a'));
    writeBytes(empty, {});
    writeBytes(truncated, bytesOf(db.path()).left(4096));
    QTemporaryDir noSettings;
    const struct {
        const char *name;
        QString configHome; // set: the settings of this (empty) folder
        QString database;   // set: the settings name this file instead
        const char *message;
    } cases[] = {
        {"missing settings", noSettings.path(), {}, "quorvale-admin config"},
        {"random bytes", {}, junk, "not a database"},
        {"zero bytes", {}, empty, "empty"},
        {"truncated", {}, truncated, "truncated.db"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        if (!c.database.isEmpty()) {
            ASSERT_EQ(quorvale::testing::runAdmin({"config", "--server", "sqlite:" + c.database,
                                                   "--login", "sa", "--password", "x",
                                                   "--database", "q"})
                          .status,
                      0);
        }
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        if (!c.configHome.isEmpty())
            env.insert("XDG_CONFIG_HOME", c.configHome);
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(builtProgram("quorvale-admin"), exportArgs(book));
        const ProcessRun run = finish(process);
        EXPECT_EQ(run.status, 4);
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.message))) << run.err.toStdString();
        EXPECT_FALSE(run.err.contains("Invalid object name")) << run.err.toStdString();
        db.writeSettings();
    }
    // An escape sequence in an argument reaches the terminal as text.
    const ProcessRun run = exportTo(book, {"--sheet", "a\x1b[31mb"});
    EXPECT_FALSE(run.err.contains(QChar(0x1b))) << run.err.toStdString();
    // A Latin-1 file name: written with replacement characters it would be another file.
    const ProcessRun notUtf8 = runInShell(
        QStringLiteral("set -- \"$@\" --xlsx \"$(printf '%s/caf\\351.xlsx' '%1')\"").arg(out.path()),
        {"export", "--report", "房产客户", "--office", "2", "--user", "1001", "--password",
         "123456"});
    EXPECT_EQ(notUtf8.status, 2) << notUtf8.err.toStdString();
    EXPECT_EQ(leftovers(out.path(), {"junk.db", "empty.db", "truncated.db"}), QStringList());
}

TEST_F(ExportFaults, SignalsLeaveNoTemporaryFiles)
{
#ifdef Q_OS_WIN
    GTEST_SKIP() << "Windows has no signals: a console event reaches only a process sharing the "
                    "test's console, which a test under Wine does not have";
#else
    earlierOutputs();
    const struct {
        int signal;
        int status;
    } cases[] = {{SIGINT, 130}, {SIGTERM, 143}, {SIGHUP, 129}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.signal);
        // A colleague's computer writing the workbook on a shared folder stops
        // the run after its PDF is printed into a temporary file, and the run
        // says it is waiting.
        const QString held = WriterLock::lockPathOf(book);
        writeBytes(held, "4242\nquorvale-admin\nanother-pc\n");
        QProcess process;
        process.start(builtProgram("quorvale-admin"),
                      QStringList{"export", "--report", "房产客户", "--office", "2", "--user",
                                  "1001", "--password", "123456", "--xlsx", book, "--pdf", pdf});
        QString said;
        ASSERT_TRUE(quorvale::testing::waitForErrorText(process, "waiting for another", said))
            << said.toStdString();
        ASSERT_FALSE(leftovers(out.path(), {"book.xlsx", "book.pdf", ".book.xlsx.lock"}).isEmpty());
        ::kill(pid_t(process.processId()), c.signal);
        const ProcessRun run = finish(process);
        QFile::remove(held);
        EXPECT_EQ(run.status, c.status);
        EXPECT_EQ(leftovers(out.path(), {"book.xlsx", "book.pdf"}), QStringList());
        EXPECT_TRUE(bytesOf(pdf) == pdfBefore) << "pdf changed";
        EXPECT_TRUE(bytesOf(book) == bookBefore) << "book changed";
    }
#endif
}

TEST_F(ExportFaults, ARelativeEmbeddedPathIsStoredAsWhereConfigRan)
{
    QProcess process;
    process.setWorkingDirectory(out.path());
    process.start(builtProgram("quorvale-admin"), {"config", "--server", "sqlite:data/q.db",
                                                   "--login", "sa", "--password", "secret",
                                                   "--database", "q"});
    ASSERT_EQ(finish(process).status, 0);
    EXPECT_EQ(SettingsStore::GetSetting("Quorvale", "DBConfig", "Svr"),
              "sqlite:" + out.path() + "/data/q.db");
}

} // namespace
