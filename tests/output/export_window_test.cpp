#include "export_test_print.h"
#include "output/windows/exportwindow.h"
#include "output/windows/saveasfolder.h"
#include "support/xlsxdump.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace quorvale;
using quorvale::testing::dumpWorkbook;

namespace {

class ExportWindowTest : public ::testing::Test {
  protected:
    void SetUp() override
    {
        desktop->answerBox = [this](const MsgBoxCall &call) {
            boxes.append(call);
            return vb::OK;
        };
        desktop->openFile = [this](const QString &path) {
            opened << path;
            return true;
        };
        source.setRows(1);
        source.setFormatString("编号|<名称|<备注||<电话");
        source.appendRows({{"1", "东湖", "x", "hidden", "0755123"}, {"2", "西湖", "y", "", ""}});
    }
    void TearDown() override { delete window.data(); }

    ExportWindow *configured(ExportWindow::Variant variant, FlexGrid &grid)
    {
        window = ExportWindow::shared(variant, desktop, nullptr);
        window->Config(&grid, "房产数据模板", "(东湖) 房产数据");
        window->Show();
        return window;
    }
    QLineEdit *text1(int i)
    {
        return window->findChild<QLineEdit *>(QStringLiteral("Text1_%1").arg(i));
    }
    void press(const char *key) { window->findChild<QAction *>(QString::fromUtf8(key))->trigger(); }
    void clickCell(int col, bool twice)
    {
        FlexGrid *g = window->Grid1();
        QCoreApplication::processEvents(); // the view hears of new rows from the event loop
        const QPoint at = g->visualRect(g->model()->index(0, col)).center();
        QTest::mouseClick(g->viewport(), Qt::LeftButton, {}, at);
        if (twice) { // what a real double-click adds after the first click
            QTest::mouseDClick(g->viewport(), Qt::LeftButton, {}, at);
            QTest::mouseRelease(g->viewport(), Qt::LeftButton, {}, at);
        }
    }

    FlexGrid source;
    QPointer<ExportWindow> window;
    std::shared_ptr<Desktop> desktop = std::make_shared<Desktop>();
    QList<MsgBoxCall> boxes;
    QStringList opened;
    QTemporaryDir dir;
};

} // namespace

TEST_F(ExportWindowTest, ConfigBuildsTheChooser)
{
    FlexGrid two;
    two.setFormatString("编号|欠费|");
    two.setRows(2);
    two.setFixedRows(2);
    two.setTextMatrix(1, 0, " 编号 ");
    two.setTextMatrix(1, 1, "水费");
    for (auto variant : {ExportWindow::Variant::Customer, ExportWindow::Variant::Finance}) {
        configured(variant, two);
        FlexGrid *g = window->Grid1();
        EXPECT_EQ(window->objectName(),
                  variant == ExportWindow::Variant::Customer ? "frmToExcel" : "frmToExcelnew");
        EXPECT_EQ(g->TextMatrix(0, 0), "编号");
        EXPECT_EQ(g->TextMatrix(0, 1), "欠费(水费)");
        EXPECT_EQ(g->TextMatrix(1, 0), "√");
        EXPECT_EQ(g->TextMatrix(1, 2), QString());
        EXPECT_EQ(g->ColWidth(2), 0);
        EXPECT_EQ(text1(1)->text(), "(东湖) 房产数据");
        EXPECT_EQ(text1(2)->text(), "房产数据模板");
        const double fitted = g->TextWidth("欠费(水费)", window->font());
        if (variant == ExportWindow::Variant::Customer)
            EXPECT_EQ(g->ColWidth(1), qRound(fitted));
        else
            EXPECT_NE(g->ColWidth(1), qRound(fitted));
        delete window.data();
    }
}

TEST_F(ExportWindowTest, MarkedColumnsAreExportedAndTheWindowCloses)
{
    configured(ExportWindow::Variant::Customer, source);
    const QString path = dir.filePath("out.xlsx");
    text1(0)->setText(path);
    clickCell(1, true);
    clickCell(2, false);
    EXPECT_EQ(window->Grid1()->TextMatrix(1, 1), QString());
    EXPECT_EQ(window->Grid1()->ColAlignment(2), 4);
    window->findChild<QCheckBox *>("Check1")->setChecked(true);
    press("输出");

    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_TRUE(window.isNull() || !window->isVisible());
    EXPECT_EQ(opened, QStringList{path});
    const QJsonObject cells =
        dumpWorkbook(path)["data"][QStringLiteral("房产数据模板")][QStringLiteral("cells")]
            .toObject();
    const std::pair<const char *, QJsonValue> expected[] = {
        {"A1", "编号"}, {"B1", "备注"}, {"C1", "电话"}, {"D1", QJsonValue::Undefined},
        {"A2", 1},      {"B2", "x"},    {"C2", 755123}, {"D2", QJsonValue::Undefined},
    };
    for (const auto &[ref, value] : expected)
        EXPECT_EQ(cells[QString::fromLatin1(ref)]["value"], value) << ref;
}

TEST_F(ExportWindowTest, MessagesAndFailuresKeepTheWindowAndTheFile)
{
    const QString legacy = dir.filePath("old.xls");
    QFile file(legacy);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromHex("d0cf11e0a1b11ae1") + QByteArray(504, '\0'));
    file.close();
    const QString book = dir.filePath("book.xlsx");
    quorvale::testing::makeWorkbookFixture(book);
    // A failure's description follows the prompt given.
    const QString failed = "输出到Execl失败: ";
    const MsgBoxCall askTitle{"请输入标题内容", 0, programTitle()};
    const MsgBoxCall fails{failed, 64, programTitle()};
    const MsgBoxCall noneMarked{failed + "没有选中要输出的列", 64, programTitle()};
    struct Case {
        QString path;
        const char *title, *sheet;
        QList<MsgBoxCall> boxes;
        bool unmarkAll = false;
    } cases[] = {
        {book, "", "表", {askTitle}},
        {book, "标题", "", {askTitle}},
        {"", "标题", "表", {{"请确定输出的文件名", 0, exeName()}, fails}},
        {legacy, "标题", "表", {fails}},
        {book, "标题", "坏/名", {fails}},
        {dir.filePath("missing/new.xlsx"), "标题", "表", {fails}},
        // Nothing marked leaves no last cell for the borders: the export fails.
        {book, "标题", "表", {noneMarked}, true},
        {dir.filePath("new.xlsx"), "标题", "表", {noneMarked}, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.path.toStdString() + " " + c.sheet);
        QFile target(c.path);
        const QByteArray bytes = target.open(QIODevice::ReadOnly) ? target.readAll() : QByteArray();
        target.close();
        boxes.clear();
        configured(ExportWindow::Variant::Finance, source);
        text1(0)->setText(c.path);
        text1(1)->setText(c.title);
        text1(2)->setText(c.sheet);
        for (int col = 0; c.unmarkAll && col < window->Grid1()->Cols(); ++col)
            window->Grid1()->setTextMatrix(1, col, QString());
        press("输出");
        ASSERT_EQ(boxes.size(), c.boxes.size());
        for (int i = 0; i < boxes.size(); ++i) {
            EXPECT_TRUE(boxes[i].prompt.startsWith(c.boxes[i].prompt))
                << boxes[i].prompt.toStdString();
            EXPECT_EQ(boxes[i].style, c.boxes[i].style);
            EXPECT_EQ(boxes[i].title, c.boxes[i].title);
        }
        if (c.boxes.size() == 1 && c.boxes[0].prompt == failed) {
            EXPECT_GT(boxes[0].prompt.size(), failed.size()) << "no error description";
        }
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(text1(0)->text(), c.path);
        EXPECT_EQ(text1(2)->text(), c.sheet);
        EXPECT_EQ(target.exists(), !bytes.isEmpty());
        if (target.open(QIODevice::ReadOnly)) {
            EXPECT_EQ(target.readAll(), bytes);
        }
    }
}

TEST_F(ExportWindowTest, FileDialogFillsThePath)
{
    const QString existing = dir.filePath("old.xls");
    QFile touch(existing);
    ASSERT_TRUE(touch.open(QIODevice::WriteOnly));
    touch.close();
    QString folder, filter, answer;
    desktop->saveFileName = [&](QWidget *, const QString &f, const QString &flt) {
        folder = f;
        filter = flt;
        return answer;
    };
    configured(ExportWindow::Variant::Customer, source);
    text1(0)->setText("before");
    const std::pair<QString, QString> cases[] = {
        {{}, "before"},
        {dir.filePath("new"), dir.filePath("new.xlsx")},
        {dir.filePath("new.xls"), dir.filePath("new.xlsx")},
        {existing, existing},
        {dir.filePath("a.xlsx"), dir.filePath("a.xlsx")},
    };
    for (const auto &[chosen, shown] : cases) {
        answer = chosen;
        window->findChild<QPushButton *>("Command1")->click();
        EXPECT_EQ(text1(0)->text(), shown);
    }
    EXPECT_EQ(folder, QCoreApplication::applicationDirPath());
    EXPECT_TRUE(filter.startsWith("Excel Flie *.xls ("));
    EXPECT_TRUE(filter.contains("*.xlsx"));
    EXPECT_TRUE(filter.contains("All flie *.*"));
}

// Installed, the program's folder is /usr/bin or Program Files: Save As
// starts where the clerk can write instead.
TEST(SaveAsFolder, TheProgramsFolderOnlyWhileItCanBeWritten)
{
    QTemporaryDir home;
    const QByteArray savedHome = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(home.path()));
    const QString program = home.filePath("bin");
    const QString documents = home.filePath("Documents");
    QDir().mkpath(program);
    const auto readOnly = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    const struct {
        const char *name;
        bool programWritable;
        bool hasDocuments;
        QString expected;
    } cases[] = {
        {"writable program folder", true, true, program},
        {"read-only, documents folder", false, true, documents},
        {"read-only, no documents folder", false, false, home.path()},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QFile::setPermissions(program, c.programWritable ? readOnly | QFile::WriteOwner : readOnly);
        if (c.hasDocuments)
            QDir().mkpath(documents);
        else
            QDir(documents).removeRecursively();
        EXPECT_EQ(QDir(saveAsFolder(program)).canonicalPath(), QDir(c.expected).canonicalPath());
    }
    QFile::setPermissions(program, readOnly | QFile::WriteOwner);
    qputenv("HOME", savedHome);
}

// Tab reaches every control in the order the window lays it out; Enter
// presses the focused button and Escape closes the window.
TEST_F(ExportWindowTest, KeyboardReachesEveryControlAndEscapeCloses)
{
    configured(ExportWindow::Variant::Customer, source);
    QApplication::setActiveWindow(window);
    const auto stopName = [](QWidget *w) {
        if (auto *button = qobject_cast<QAbstractButton *>(w))
            return w->objectName() + u' ' + button->text();
        return w->objectName();
    };
    const auto toolButton = [this](const QString &text) -> QWidget * {
        for (QToolButton *b : window->findChildren<QToolButton *>())
            if (b->text() == text)
                return b;
        return nullptr;
    };
    QWidget *first = toolButton("输出");
    ASSERT_NE(first, nullptr);
    first->setFocus();
    QStringList stops;
    for (QWidget *f = first; f && stops.size() < 12;) {
        stops << stopName(f);
        QTest::keyClick(f, Qt::Key_Tab);
        f = QApplication::focusWidget();
        if (f == first)
            break;
    }
    EXPECT_EQ(stops.join(" | ").toStdString(),
              " 输出 |  退出 | Grid1 | Text1_0 | Command1 ... | Text1_1 | Text1_2 | Check1 显示Excel");

    // Enter on 退出 closes; Escape closes a window opened again.
    QWidget *closeButton = toolButton("退出");
    ASSERT_NE(closeButton, nullptr);
    closeButton->setFocus();
    QTest::keyClick(closeButton, Qt::Key_Return);
    EXPECT_FALSE(window && window->isVisible());
    configured(ExportWindow::Variant::Customer, source);
    QApplication::setActiveWindow(window);
    QTest::keyClick(window->Grid1(), Qt::Key_Escape);
    EXPECT_FALSE(window && window->isVisible());
}
