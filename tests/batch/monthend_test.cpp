// The month-end run: every report of every office in one command, as a
// scheduler starts it.
#include "batch/exportdates.h"
#include "batch/usageerror.h"
#include "runtime/writerlock.h"
#include "support/adminprocess.h"
#include "support/files.h"
#include "support/fixturedb.h"
#include "support/libreoffice.h"
#include "support/pdfprinter.h"
#include "support/xlsxdump.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

using namespace quorvale;
using quorvale::testing::builtProgram;
using quorvale::testing::cellsOf;
using quorvale::testing::dumpWorkbook;
using quorvale::testing::ProcessRun;
using quorvale::testing::runAdmin;
using quorvale::testing::sheetOf;

namespace {

QStringList files(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

class MonthEnd : public ::testing::Test {
  protected:
    void SetUp() override
    {
        db.loadDemo(QDate::currentDate());
        // Office 3's deliberately overflowing room would fail one report.
        db.execute("DELETE FROM 室表 WHERE 室 = '123456'");
        db.writeSettings();
    }
    QStringList signIn() const
    {
        return {"--user", "1002", "--password", "888888", "--post", "GW05"};
    }

    FixtureDb db;
    QTemporaryDir out;
};

TEST_F(MonthEnd, EveryReportOfEveryOfficeEqualsTheSingleExports)
{
    const QString pattern = out.filePath("books/{office}.xlsx");
    const ProcessRun run = runAdmin(QStringList{"export", "--report", "all", "--office", "all",
                                                "--month", "this", "--xlsx", pattern} +
                                    signIn());
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.startsWith("period: month " +
                                   QDate::currentDate().toString("yyyyMM")))
        << run.out.toStdString();
    EXPECT_TRUE(run.err.contains("skipping office 1A")) << run.err.toStdString();
    EXPECT_EQ(files(out.filePath("books")),
              (QStringList{"10.xlsx", "2.xlsx", "3.xlsx", "概览.xlsx"}));

    const QStringList reports = {"房产客户",           "车位客户",
                                 "财务数据欠收表房产", "财务数据欠收表车位",
                                 "财务数据预收表车位", "财务数据预收表房产"};
    for (const QString office : {"2", "10"}) {
        const QJsonObject together = dumpWorkbook(out.filePath("books/" + office + ".xlsx"));
        // The overview first; then Sheet1, as a new workbook of Excel starts.
        ASSERT_EQ(together.value("sheets").toArray().size(), 8);
        for (const QString &report : reports) {
            SCOPED_TRACE((office + " " + report).toStdString());
            const QString single = out.filePath("single.xlsx");
            QFile::remove(single);
            const ProcessRun one = runAdmin(QStringList{"export", "--report", report, "--office",
                                                        office, "--xlsx", single} +
                                            signIn());
            ASSERT_EQ(one.status, 0) << one.err.toStdString();
            const QJsonObject alone = dumpWorkbook(single);
            const QString sheet = alone.value("sheets").toArray().last().toString();
            EXPECT_EQ(cellsOf(together, sheet), cellsOf(alone, sheet));
        }
    }
}

// Arrears as of the month end and the month's receipts in the same workbook.
TEST_F(MonthEnd, CutOffAndReceiptsTogetherGiveEachReportItsOwn)
{
    const QString book = out.filePath("month.xlsx");
    const QStringList dates = {"--month", "this", "--cutoff", "month-end", "--receipts", "month"};
    const ProcessRun run =
        runAdmin(QStringList{"export", "--report", "all", "--office", "2", "--xlsx", book} +
                 dates + signIn());
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QString period = run.out.section('\n', 0, 0);
    EXPECT_TRUE(period.contains("(arrears)") && period.contains("(advance receipts)"))
        << period.toStdString();

    const QJsonObject together = dumpWorkbook(book);
    const struct {
        const char *report;
        QStringList dates;
    } singles[] = {
        {"财务数据欠收表房产", {"--month", "this", "--cutoff", "month-end"}},
        {"财务数据欠收表车位", {"--month", "this", "--cutoff", "month-end"}},
        {"财务数据预收表车位", {"--month", "this", "--receipts", "month"}},
        {"财务数据预收表房产", {"--month", "this", "--receipts", "month"}},
    };
    for (const auto &single : singles) {
        SCOPED_TRACE(single.report);
        const QString alone = out.filePath(QString::fromUtf8(single.report) + ".xlsx");
        const ProcessRun one = runAdmin(QStringList{"export", "--report", single.report,
                                                    "--office", "2", "--xlsx", alone} +
                                        single.dates + signIn());
        ASSERT_EQ(one.status, 0) << one.err.toStdString();
        const QJsonObject dump = dumpWorkbook(alone);
        const QString sheet = dump.value("sheets").toArray().last().toString();
        EXPECT_FALSE(cellsOf(dump, sheet).isEmpty());
        EXPECT_EQ(cellsOf(together, sheet), cellsOf(dump, sheet));
    }
}

TEST_F(MonthEnd, ARunThatCannotBeDoneWritesNothing)
{
    const struct {
        const char *name;
        QStringList arguments;
    } cases[] = {
        {"two offices into one sheet",
         {"--report", "房产客户", "--office", "2,10", "--xlsx", out.filePath("one.xlsx")}},
        {"two reports into one PDF",
         {"--report", "all", "--office", "2", "--xlsx", out.filePath("{report}.xlsx"), "--pdf",
          out.filePath("{office}.pdf")}},
        {"a cut-off that no report of the run would take",
         {"--report", "财务数据预收表车位", "--office", "2", "--cutoff", "today", "--receipts",
          "month", "--xlsx", out.filePath("one.xlsx")}},
        {"dry run",
         {"--report", "all", "--office", "all", "--xlsx", out.filePath("{office}/{report}.xlsx"),
          "--dry-run"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const ProcessRun run = runAdmin(QStringList{"export"} + c.arguments + signIn());
        EXPECT_EQ(run.status, QString(c.name) == "dry run" ? 0 : 2) << run.err.toStdString();
        EXPECT_EQ(QDir(out.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                  QStringList());
    }
}

TEST_F(MonthEnd, ARefusedOfficeInTheMiddleStillYieldsTheOthers)
{
    const ProcessRun run =
        runAdmin(QStringList{"export", "--report", "财务数据欠收表房产,车位客户", "--office",
                             "2,99,10", "--xlsx", out.filePath("{office}.xlsx")} +
                 signIn());
    EXPECT_EQ(run.status, 3) << run.err.toStdString();
    EXPECT_EQ(files(out.path()), (QStringList{"10.xlsx", "2.xlsx"}));
    EXPECT_EQ(run.out.count("refused: office 99"), 2) << run.out.toStdString();
}

TEST_F(MonthEnd, AnInterruptedRunLeavesTheWorkbookItWasWriting)
{
#ifdef Q_OS_WIN
    GTEST_SKIP() << "Windows has no signals: a console event reaches only a process sharing the "
                    "test's console, which a test under Wine does not have";
#else
    const QString book = out.filePath("big.xlsx");
    ASSERT_EQ(runAdmin(QStringList{"export", "--report", "车位客户", "--office", "2", "--xlsx",
                                   book} +
                       signIn())
                  .status,
              0);
    QFile f(book);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray before = f.readAll();
    f.close();

    // A colleague's computer is writing the workbook on a shared folder: the
    // run computes its first report and waits at the workbook, saying so; it
    // is stopped there.
    const QString held = WriterLock::lockPathOf(book);
    quorvale::testing::writeBytes(held, "4242\nquorvale-admin\nanother-pc\n");
    QProcess process;
    process.start(builtProgram("quorvale-admin"),
                  QStringList{"export", "--report", "all", "--office", "2", "--xlsx", book} +
                      signIn());
    QString said;
    ASSERT_TRUE(quorvale::testing::waitForErrorText(process, "waiting for another", said))
        << said.toStdString();
    ::kill(pid_t(process.processId()), SIGINT);
    process.waitForFinished(60000);
    QFile::remove(held);
    EXPECT_EQ(process.exitCode(), 130);
    EXPECT_EQ(files(out.path()), QStringList{"big.xlsx"});
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.readAll() == before);
#endif
}

TEST_F(MonthEnd, APrintTurnsWhenTooWideUprightAndTheSheetTakesItsName)
{
    const QString book = out.filePath("a.xlsx"), pdf = out.filePath("arrears.pdf");
    const ProcessRun run =
        runAdmin(QStringList{"export", "--report", "财务数据欠收表房产", "--office", "2", "--xlsx",
                             book, "--sheet", "本月", "--pdf", pdf, "--orientation", "auto"} +
                 signIn());
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(dumpWorkbook(book).value("sheets").toArray().contains(QJsonValue("本月")));
    QProcess info, text;
    info.start("pdfinfo", {pdf});
    text.start("pdftotext", {"-layout", pdf, "-"});
    ASSERT_TRUE(info.waitForFinished(60000) && text.waitForFinished(60000));
    // The 15-column table is wider than upright A4 but fits it turned.
    EXPECT_TRUE(QString::fromUtf8(info.readAllStandardOutput()).contains("842 x 595"));
    const QString printed = QString::fromUtf8(text.readAllStandardOutput());
    EXPECT_TRUE(printed.contains("(幸福里花园)") && printed.contains("第1页"))
        << printed.left(400).toStdString();
}

// A column of a written sheet added up (rows 2 on), and how many rows had a value.
std::pair<double, int> columnSum(const QJsonObject &cells, const QString &column)
{
    double sum = 0;
    int rows = 0;
    for (int r = 2; cells.contains(column + QString::number(r)); ++r) {
        sum += cells.value(column + QString::number(r)).toObject().value("value").toDouble();
        ++rows;
    }
    return {sum, rows};
}

// The overview's row whose column A reads `caption`, from row `from` on.
int rowOf(const QJsonObject &cells, const QString &caption, int from = 1)
{
    for (int r = from; r < 200; ++r)
        if (cells.value("A" + QString::number(r)).toObject().value("value").toString() == caption)
            return r;
    ADD_FAILURE() << "no row " << caption.toStdString();
    return 0;
}

double number(const QJsonObject &cells, const QString &column, int row)
{
    return cells.value(column + QString::number(row)).toObject().value("value").toDouble();
}

// The overview's figures are the report sheets' own columns added up; its
// charts are bound to its own cells.
TEST_F(MonthEnd, OverviewAddsUpTheReportSheetsAndChartsItsCells)
{
    const QString book = out.filePath("month.xlsx");
    const ProcessRun run = runAdmin(QStringList{"export", "--report", "all", "--office", "2",
                                                "--month", "this", "--xlsx", book} +
                                    signIn());
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QJsonObject dump = dumpWorkbook(book);
    ASSERT_EQ(dump.value("sheets").toArray().first().toString(), "月末概览");
    const QJsonObject o = cellsOf(dump, "月末概览");

    // Every finance report puts the amount in its sixth column, whatever its heading.
    const auto [property, propertyRows] = columnSum(cellsOf(dump, "财务房产数据欠收表"), "F");
    const auto [parking, parkingRows] = columnSum(cellsOf(dump, "财务车位数据欠收表"), "F");
    const auto [advance1, advanceRows1] = columnSum(cellsOf(dump, "财务房产数据预收表"), "F");
    const auto [advance2, advanceRows2] = columnSum(cellsOf(dump, "财务车位数据预收表"), "F");
    ASSERT_GT(propertyRows, 0);
    ASSERT_GT(parkingRows, 0);

    const int propertySum = rowOf(o, "房产小计"), parkingSum = rowOf(o, "车位小计");
    const int total = rowOf(o, "合计");
    EXPECT_NEAR(number(o, "G", propertySum), property, 1e-6);
    EXPECT_NEAR(number(o, "G", parkingSum), parking, 1e-6);
    EXPECT_NEAR(number(o, "G", total), property + parking, 1e-6);
    EXPECT_EQ(number(o, "D", total), propertyRows + parkingRows);

    // The ages part the same total.
    const int firstAge = rowOf(o, "当月");
    double aged = 0;
    for (int r = firstAge; r < firstAge + 5; ++r)
        aged += number(o, "C", r);
    EXPECT_NEAR(aged, property + parking, 1e-6);

    const int advanceTotal = rowOf(o, "合计", rowOf(o, "四、预收 按收费项目"));
    EXPECT_NEAR(number(o, "D", advanceTotal), advance1 + advance2, 1e-6);
    EXPECT_EQ(number(o, "C", advanceTotal), advanceRows1 + advanceRows2);

    // A bar chart of the fee items' outstanding amounts, a column chart of the ages.
    const QJsonArray charts = sheetOf(dump, "月末概览").value("charts").toArray();
    ASSERT_EQ(charts.size(), 2);
    const int header = rowOf(o, "类别");
    const auto series = [&](int chart) {
        const QJsonObject s = charts[chart].toObject().value("series").toArray()[0].toObject();
        return (s.value("categories").toString() + " " + s.value("values").toString())
            .toStdString();
    };
    EXPECT_EQ(charts[0].toObject().value("direction").toString(), "bar");
    EXPECT_EQ(series(0), QStringLiteral("'月末概览'!$B$%1:$B$%2 '月末概览'!$G$%1:$G$%2")
                             .arg(header + 1)
                             .arg(propertySum - 1)
                             .toStdString());
    EXPECT_EQ(charts[1].toObject().value("direction").toString(), "col");
    EXPECT_EQ(series(1), QStringLiteral("'月末概览'!$A$%1:$A$%2 '月末概览'!$C$%1:$C$%2")
                             .arg(firstAge)
                             .arg(firstAge + 4)
                             .toStdString());

    // LibreOffice draws the charts: its PDF of the workbook carries their titles and labels.
    const QString drawn = quorvale::testing::pdfText(
        quorvale::testing::convertWithLibreOffice(book, "pdf", out.filePath("lo")));
    for (const char *expected : {"欠收金额 按收费项目", "欠收金额 按账龄", "12个月以上"})
        EXPECT_TRUE(drawn.contains(QString::fromUtf8(expected))) << expected;

    // Run again: the overview is replaced, not added to, and its old charts go.
    ASSERT_EQ(runAdmin(QStringList{"export", "--report", "all", "--office", "2", "--month", "this",
                                   "--xlsx", book} +
                       signIn())
                  .status,
              0);
    const QJsonObject again = dumpWorkbook(book);
    EXPECT_EQ(again.value("sheets").toArray(), dump.value("sheets").toArray());
    QStringList chartParts;
    for (const QString &entry : again.value("entries").toObject().keys())
        if (entry.startsWith("xl/charts/") || entry.startsWith("xl/drawings/drawing"))
            chartParts << entry;
    EXPECT_EQ(chartParts, QStringList({"xl/charts/chart1.xml", "xl/charts/chart2.xml",
                                       "xl/drawings/drawing1.xml"}));
    EXPECT_EQ(cellsOf(again, "月末概览"), o);
}

// Several offices: the company's overview adds up the offices' ones; with
// --pdf each office's overview is printed, its tables and then its charts.
TEST_F(MonthEnd, CompanyOverviewAddsUpTheOfficesAndThePdfDrawsTheCharts)
{
    const ProcessRun run =
        runAdmin(QStringList{"export", "--report", "all", "--office", "2,10", "--month", "this",
                             "--xlsx", out.filePath("{month}/{office}.xlsx"), "--pdf",
                             out.filePath("{month}/{office}-{report}.pdf")} +
                 signIn());
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QString month = out.filePath(QDate::currentDate().toString("yyyyMM"));
    const QString company = month + "/概览.xlsx";
    EXPECT_TRUE(run.out.contains("company overview: " + company)) << run.out.toStdString();

    const QJsonObject dump = dumpWorkbook(company);
    EXPECT_EQ(dump.value("sheets").toArray(), QJsonArray{"月末概览"});
    const QJsonObject c = cellsOf(dump, "月末概览");
    const int header = rowOf(c, "管理处");
    const int total = rowOf(c, "合计");
    ASSERT_EQ(total, header + 3);
    for (const QString office : {"2", "10"}) {
        SCOPED_TRACE(office.toStdString());
        const QJsonObject o = cellsOf(dumpWorkbook(month + "/" + office + ".xlsx"), "月末概览");
        const int row = c.value("A" + QString::number(header + 1))
                                .toObject()
                                .value("value")
                                .toString()
                                .startsWith(office + " ")
                            ? header + 1
                            : header + 2;
        // Outstanding (G) and advance receipts (I) are the office's totals.
        EXPECT_NEAR(number(c, "G", row), number(o, "G", rowOf(o, "合计")), 1e-6);
        EXPECT_NEAR(number(c, "I", row),
                    number(o, "D", rowOf(o, "合计", rowOf(o, "四、预收 按收费项目"))), 1e-6);
    }
    EXPECT_NEAR(number(c, "G", total), number(c, "G", header + 1) + number(c, "G", header + 2),
                1e-6);
    const QJsonArray charts = sheetOf(dump, "月末概览").value("charts").toArray();
    ASSERT_EQ(charts.size(), 1);
    EXPECT_EQ(charts[0].toObject().value("grouping").toString(), "stacked");
    EXPECT_EQ(charts[0].toObject().value("series").toArray().size(), 5);

    const QString pdf = month + "/2-月末概览.pdf";
    const QString text = quorvale::testing::pdfText(pdf);
    for (const char *expected :
         {"(幸福里花园) 月末概览", "房产小计", "三、欠收最多的十个房间或车位",
          "欠收金额 按收费项目", "欠收金额 按账龄", "12个月以上", "第2页 共2页"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(expected))) << expected;
}

TEST_F(MonthEnd, OverviewOnlyWhenAskedOrForEveryReport)
{
    const struct {
        QStringList arguments;
        bool overview;
    } cases[] = {
        {{"--report", "all", "--no-overview"}, false},
        {{"--report", "财务数据欠收表房产"}, false},
        {{"--report", "财务数据欠收表房产", "--overview"}, true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments.join(' ').toStdString());
        const QString book = out.filePath("asked.xlsx");
        QFile::remove(book);
        const ProcessRun run = runAdmin(QStringList{"export", "--office", "2", "--xlsx", book} +
                                        c.arguments + signIn());
        ASSERT_EQ(run.status, 0) << run.err.toStdString();
        EXPECT_EQ(dumpWorkbook(book).value("sheets").toArray().contains("月末概览"), c.overview);
    }
    const ProcessRun customers =
        runAdmin(QStringList{"export", "--report", "房产客户", "--office", "2", "--overview",
                             "--xlsx", out.filePath("c.xlsx")} +
                 signIn());
    EXPECT_EQ(customers.status, 2);
    EXPECT_TRUE(customers.err.contains("--overview needs a finance report"));
}

TEST(ExportDates, WordsResolveAcrossYearsAndLeapMonths)
{
    const struct {
        const char *word;
        QDate today;
        const char *month;
    } months[] = {
        {"this", {2027, 1, 5}, "202701"},    {"last", {2027, 1, 5}, "202612"},
        {"last-2", {2027, 1, 31}, "202611"}, {"last-13", {2027, 1, 1}, "202512"},
        {"202402", {2027, 1, 1}, "202402"},
    };
    for (const auto &c : months)
        EXPECT_EQ(resolveMonth("month", c.word, c.today), QString(c.month)) << c.word;

    const QDate today(2028, 3, 1);
    EXPECT_EQ(resolveCutoff("month-end", today, "202802"), "2028-02-29");
    EXPECT_EQ(resolveCutoff("month-end", today, "202702"), "2027-02-28");
    EXPECT_EQ(resolveCutoff("month-end", today, "202612"), "2026-12-31");
    EXPECT_EQ(resolveCutoff("today", today, "202802"), "2028-03-01");
    EXPECT_EQ(resolveReceipts("month", "202802"),
              std::make_pair(QString("2028-02-01"), QString("2028-02-29")));
    for (const char *bad : {"next", "last-", "2026111", " 202611", "lastly"})
        EXPECT_THROW(resolveMonth("month", bad, today), UsageError) << bad;
}

} // namespace
