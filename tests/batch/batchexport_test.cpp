#include "reports/windows/frm收款日报表.h"
#include "reports/windows/frm财务数据欠收表房产.h"
#include "reports/windows/frm财务数据欠收表车位.h"
#include "reports/windows/frm财务数据预收表房产.h"
#include "reports/windows/frm财务数据预收表车位.h"
#include "reports/windows/frm车位基础表.h"
#include "runtime/vb.h"
#include "session/dbconnection.h"
#include "session/signin.h"
#include "session/windows/frmlogin.h"
#include "session/windows/mdiform1.h"
#include "support/adminprocess.h"
#include "support/files.h"
#include "support/fixturedb.h"
#include "support/libreoffice.h"
#include "support/xlsxdump.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDateEdit>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QProcess>
#include <QRadioButton>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace quorvale;

namespace {

quorvale::testing::ProcessRun exportWith(const QStringList &arguments)
{
    return quorvale::testing::runAdmin(QStringList{"export"} + arguments);
}

QString cellName(int row, int col)
{
    QString letters;
    for (int c = col; c > 0; c = (c - 1) / 26)
        letters.prepend(QChar(u'A' + (c - 1) % 26));
    return letters + QString::number(row);
}

// A workbook value as the grid text it came from: numbers in shortest form,
// dates as the grid shows them.
QString asGridText(const QJsonObject &cell)
{
    const QJsonValue v = cell.value("value");
    if (v.isNull() || v.isUndefined())
        return {};
    if (cell.value("isDate").toBool()) {
        QString iso = v.toString();
        return iso.endsWith("T00:00:00") ? iso.left(10) : iso.replace('T', ' ');
    }
    if (v.isDouble())
        return vbrt::Str(v.toDouble());
    return v.toString();
}

using WindowSetup = std::function<void(ReportWindow &)>;

struct Case {
    const char *name;
    std::function<ReportWindow *()> window;
    QStringList arguments; // report inputs after --report/--office
    WindowSetup setup;     // the same inputs typed into the window
};

QRadioButton *option(ReportWindow &w, const char *name, int index)
{
    for (QRadioButton *b : w.findChildren<QRadioButton *>(QString::fromUtf8(name)))
        if (b->property("index").toInt() == index)
            return b;
    return nullptr;
}

void typeText(ReportWindow &w, const char *name, const QString &text)
{
    w.findChild<QLineEdit *>(QString::fromUtf8(name))->setText(text);
}

void pickDate(ReportWindow &w, const char *name, const QDate &date)
{
    w.findChild<QDateEdit *>(QString::fromUtf8(name))->setDate(date);
}

class BatchExport : public ::testing::Test {
  protected:
    void SetUp() override
    {
        db.loadDemo(today);
        db.writeSettings();
        // The window runs in this process under the same sign-in as the command.
        Session draft;
        ASSERT_TRUE(ConnectDatabase(draft));
        const SignInResult result = verifyCredentials(draft, "1002", "888888");
        ASSERT_EQ(result.kind, SignInResult::Kind::Posts);
        for (const PostChoice &post : result.posts)
            if (post.postCode == "GW05")
                draft.takePost(post);
        session = signIn(std::move(draft));
        desktop->answerBox = [this](const MsgBoxCall &call) {
            boxes << call.prompt;
            return vb::OK;
        };
    }

    QStringList signInArgs() const
    {
        return {"--user", "1002", "--password", "888888", "--post", "GW05"};
    }

    const QDate today = QDate::currentDate();
    FixtureDb db;
    SessionPtr session;
    std::shared_ptr<Desktop> desktop = std::make_shared<Desktop>();
    QTemporaryDir out;
    QStringList boxes;
};

TEST_F(BatchExport, WorkbookEqualsTheWindowsGridForEveryReportAndMode)
{
    const QString month = vbrt::formatYearMonth(today);
    const QString yearAgo = vbrt::formatYearMonth(today.addMonths(-11));
    const QString nextYear = vbrt::formatYearMonth(today.addMonths(12));
    const QDate cutOff = today.addDays(-20);
    const QString cutOffText = cutOff.toString("yyyy-MM-dd");
    const QDate monthStart(today.year(), today.month(), 1);

    const auto monthRange = [&](ReportWindow &w, const QString &first, const QString &last) {
        option(w, "Option1", 1)->click();
        typeText(w, "Text3", first);
        typeText(w, "Text4", last);
    };
    const std::vector<Case> cases = {
        {"property customers",
         [this] { return new frm收款日报表(session, desktop); },
         {"--report", "房产客户"},
         {}},
        {"parking customers",
         [this] { return new frm车位基础表(session, desktop); },
         {"--report", "frm车位基础表"},
         {}},
        {"property arrears, one month, cut-off",
         [this] { return new frm财务数据欠收表房产(session, desktop); },
         {"--report", "财务数据欠收表房产", "--month", month, "--cutoff", cutOffText},
         [&](ReportWindow &w) {
             typeText(w, "Text1", month);
             typeText(w, "Text2", cutOffText);
         }},
        {"property arrears, range",
         [this] { return new frm财务数据欠收表房产(session, desktop); },
         {"--report", "frm财务数据欠收表房产", "--months", yearAgo + ":" + month},
         [&](ReportWindow &w) { monthRange(w, yearAgo, month); }},
        {"parking arrears, range",
         [this] { return new frm财务数据欠收表车位(session, desktop); },
         {"--report", "财务数据欠收表车位", "--months", yearAgo + ":" + month},
         [&](ReportWindow &w) { monthRange(w, yearAgo, month); }},
        {"parking advance, cut-off",
         [this] { return new frm财务数据预收表车位(session, desktop); },
         {"--report", "财务数据预收表车位", "--month", month, "--cutoff",
          today.toString("yyyy-MM-dd")},
         [&](ReportWindow &w) { typeText(w, "Text1", month); }},
        {"parking advance, receipt range",
         [this] { return new frm财务数据预收表车位(session, desktop); },
         {"--report", "财务数据预收表车位", "--months", month + ":" + nextYear, "--receipts",
          monthStart.addYears(-1).toString("yyyy-MM-dd") + ":" + today.toString("yyyy-MM-dd")},
         [&](ReportWindow &w) {
             monthRange(w, month, nextYear);
             option(w, "Option2", 1)->click();
             pickDate(w, "DTPicker1", monthStart.addYears(-1));
             pickDate(w, "DTPicker2", today);
         }},
        {"property advance, cut-off",
         [this] { return new frm财务数据预收表房产(session, desktop); },
         {"--report", "frm财务数据预收表房产", "--cutoff", today.toString("yyyy/M/d")},
         [&](ReportWindow &w) { pickDate(w, "DTPicker3", today); }},
    };

    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        std::unique_ptr<ReportWindow> window(c.window());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->load();
        QComboBox *combo = window->combo1();
        combo->setCurrentIndex(combo->findText("2 ", Qt::MatchStartsWith));
        if (c.setup)
            c.setup(*window);
        window->ReportCommand(0);
        ASSERT_TRUE(boxes.isEmpty()) << boxes.join('|').toStdString();
        const FlexGrid &grid = *window->grid();
        ASSERT_GT(grid.Rows(), 1);

        const QString book = out.filePath(QStringLiteral("%1.xlsx").arg(c.name));
        const auto run =
            exportWith(c.arguments + QStringList{"--office", "2", "--xlsx", book} + signInArgs());
        ASSERT_EQ(run.status, 0) << run.err.toStdString();

        const QJsonObject dump = quorvale::testing::dumpWorkbook(book);
        const QString sheet = window->definition().exportTemplate;
        ASSERT_TRUE(dump.value("sheets").toArray().contains(QJsonValue(sheet)));
        const QJsonObject cells =
            dump.value("data").toObject().value(sheet).toObject().value("cells").toObject();
        ASSERT_FALSE(cells.isEmpty());
        int mismatches = 0;
        for (int r = 0; r < grid.Rows(); ++r) {
            int k = 0;
            for (int col = 0; col < grid.Cols(); ++col) {
                if (grid.TextMatrix(0, col).isEmpty())
                    continue;
                ++k;
                const QJsonObject cell = cells.value(cellName(r + 1, k)).toObject();
                const QString want = grid.TextMatrix(r, col);
                const QString got = asGridText(cell);
                // Excel takes typed numbers as numbers: "0502" arrives as 502.
                const bool sameNumber = cell.value("value").isDouble() &&
                                        want.toDouble() == cell.value("value").toDouble();
                if (got != want && !sameNumber && mismatches++ < 5)
                    ADD_FAILURE() << cellName(r + 1, k).toStdString() << ": workbook "
                                  << got.toStdString() << ", grid "
                                  << grid.TextMatrix(r, col).toStdString();
            }
        }
        EXPECT_EQ(mismatches, 0);
    }
}

TEST_F(BatchExport, FailuresGiveTheirStatusAndMessageAndLeaveNoFile)
{
    const struct {
        const char *name;
        QStringList arguments;
        int status;
        const char *message;
    } cases[] = {
        {"unknown report", {"--report", "frmNone", "--office", "2"}, 2, "unknown report"},
        {"months on a customer report",
         {"--report", "房产客户", "--office", "2", "--month", "202401"},
         2,
         "finance reports only"},
        {"range without colon",
         {"--report", "财务数据欠收表房产", "--office", "2", "--months", "202401"},
         2,
         "FIRST:LAST"},
        {"wrong password",
         {"--report", "房产客户", "--office", "2", "--user", "1001", "--password", "x"},
         3,
         "用户名或密码不正确,请重新输入!"},
        {"several posts, none named",
         {"--report", "房产客户", "--office", "2", "--user", "1002", "--password", "888888"},
         3,
         "GW05"},
        {"office not offered",
         {"--report", "房产客户", "--office", "99"},
         3,
         "not in the office list"},
        {"commercial office", {"--report", "房产客户", "--office", "1A"}, 3, "commercial"},
        {"month 13",
         {"--report", "财务数据欠收表房产", "--office", "2", "--month", "202413"},
         3,
         "请输入统计年月！"},
        {"reversed range",
         {"--report", "财务数据欠收表车位", "--office", "2", "--months", "202405:202404"},
         3,
         "起始年月不能大于截止年月，请重新输入！"},
        {"bad cut-off",
         {"--report", "财务数据欠收表房产", "--office", "2", "--cutoff", "2024-02-30"},
         2,
         "not a date"},
        // The window would take these as text and find other rows than 202611.
        {"month with a blank",
         {"--report", "财务数据欠收表房产", "--office", "2", "--month", " 202611"},
         2,
         "not a month"},
        {"seven-digit month",
         {"--report", "财务数据欠收表车位", "--office", "2", "--months", "202601:2026111"},
         2,
         "not a month"},
        {"reversed receipts",
         {"--report", "财务数据预收表车位", "--office", "2", "--receipts", "2026-11-30:2026-11-01"},
         2,
         "first date is after the last"},
        {"empty PDF name", {"--report", "房产客户", "--office", "2", "--pdf", ""}, 2, "--pdf needs"},
        // The folder is named as missing, not as read-only.
        {"missing folder",
         {"--report", "房产客户", "--office", "2", "--xlsx", "/nonexistent/dir/a.xlsx"},
         4,
         "文件夹“/nonexistent/dir”不存在"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QString book = out.filePath("refused.xlsx");
        const QString pdf = out.filePath("refused.pdf");
        QStringList arguments = c.arguments;
        if (!arguments.contains("--user"))
            arguments += signInArgs();
        if (!arguments.contains("--xlsx"))
            arguments += QStringList{"--xlsx", book};
        if (!arguments.contains("--pdf"))
            arguments += QStringList{"--pdf", pdf};
        const auto run = exportWith(arguments);
        EXPECT_EQ(run.status, c.status) << run.err.toStdString();
        // Folders are named as the system writes them (Z:\\nonexistent\\dir under Wine).
        const QString message = QString::fromUtf8(c.message).replace(
            "/nonexistent/dir",
            QDir::toNativeSeparators(QFileInfo("/nonexistent/dir").absoluteFilePath()));
        EXPECT_TRUE(run.err.contains(message)) << run.err.toStdString();
        EXPECT_EQ(run.err.count('\n'), 1) << run.err.toStdString();
        EXPECT_FALSE(QFile::exists(book));
        EXPECT_FALSE(QFile::exists(pdf));
        EXPECT_EQ(QDir(out.path()).entryList(QDir::Files | QDir::Hidden).size(), 0);
    }
}

// Workbooks their owners locked, and old .xls templates: the run says what
// it did or why not, with the status of other workbook failures.
TEST_F(BatchExport, LockedWorkbooksAreRefusedAndOldXlsConverted)
{
    quorvale::testing::runWorkbookTool({"shape", "protected-locked", out.filePath("locked.xlsx")});
    quorvale::testing::runWorkbookTool({"shape", "plain", out.filePath("made.xlsx")});
    const QString xls = quorvale::testing::convertWithLibreOffice(out.filePath("made.xlsx"),
                                                                  "xls:MS Excel 97", out.path());
    const struct {
        const char *name;
        QString workbook, sheet;
        int status;
        const char *said;
    } cases[] = {
        {"protected sheet", out.filePath("locked.xlsx"), "Sheet1", 4,
         "工作表“Sheet1”在 Excel 中受保护"},
        {"old .xls", xls, "房产", 0, "已转换为 made.xlsx 并输出到其中；原文件 made.xls 未改动"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(out.filePath("made.xlsx"));
        const QByteArray before = quorvale::testing::bytesOf(c.workbook);
        const auto run = exportWith(QStringList{"--report", "房产客户", "--office", "2", "--xlsx",
                                                c.workbook, "--sheet", c.sheet} +
                                    signInArgs());
        EXPECT_EQ(run.status, c.status) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(QString::fromUtf8(c.said))) << run.err.toStdString();
        EXPECT_EQ(quorvale::testing::bytesOf(c.workbook), before);
    }
    const QString converted = out.filePath("made.xlsx");
    EXPECT_TRUE(quorvale::testing::dumpWorkbook(converted)["sheets"].toArray().contains("房产"));
}

} // namespace
