#include "export_test_print.h"
#include "output/exportwindow.h"
#include "ui/flexgrid.h"
#include "ui/msgbox.h"
#include "support/xlsxdump.h"

#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace quorvale;
using quorvale::testing::dumpWorkbook;

namespace {

class ExportWindowTest : public ::testing::Test {
  protected:
    void SetUp() override
    {
        setMsgBoxResponder([this](const MsgBoxCall &call) {
            boxes.append(call);
            return vb::OK;
        });
        ExportWindow::setOpenWorkbookHook([this](const QString &path) { opened << path; });
        source.setRows(1);
        source.setFormatString(QStringLiteral("编号|<名称|<备注||<电话"));
        source.appendRows({{"1", "东湖", "x", "hidden", "0755123"}, {"2", "西湖", "y", "", ""}});
    }
    void TearDown() override
    {
        setMsgBoxResponder({});
        ExportWindow::setOpenWorkbookHook({});
        ExportWindow::setFileDialogHook({});
        delete window.data();
    }

    ExportWindow *configured(ExportWindow::Variant variant, FlexGrid &grid)
    {
        window = ExportWindow::shared(variant);
        window->Config(&grid, QStringLiteral("房产数据模板"), QStringLiteral("(东湖) 房产数据"));
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
    QList<MsgBoxCall> boxes;
    QStringList opened;
    QTemporaryDir dir;
};

} // namespace

TEST_F(ExportWindowTest, ConfigBuildsTheChooser)
{
    FlexGrid two;
    two.setFormatString(QStringLiteral("编号|欠费|"));
    two.setRows(2);
    two.setFixedRows(2);
    two.setTextMatrix(1, 0, QStringLiteral(" 编号 "));
    two.setTextMatrix(1, 1, QStringLiteral("水费"));
    for (auto variant : {ExportWindow::Variant::Customer, ExportWindow::Variant::Finance}) {
        configured(variant, two);
        FlexGrid *g = window->Grid1();
        EXPECT_EQ(window->objectName(), variant == ExportWindow::Variant::Customer
                                            ? QStringLiteral("frmToExcel")
                                            : QStringLiteral("frmToExcelnew"));
        EXPECT_EQ(g->TextMatrix(0, 0), QStringLiteral("编号"));
        EXPECT_EQ(g->TextMatrix(0, 1), QStringLiteral("欠费(水费)"));
        EXPECT_EQ(g->TextMatrix(1, 0), QStringLiteral("√"));
        EXPECT_EQ(g->TextMatrix(1, 2), QString());
        EXPECT_EQ(g->ColWidth(2), 0);
        EXPECT_EQ(text1(1)->text(), QStringLiteral("(东湖) 房产数据"));
        EXPECT_EQ(text1(2)->text(), QStringLiteral("房产数据模板"));
        const double fitted = g->TextWidth(QStringLiteral("欠费(水费)"), window->font());
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
    const QString path = dir.filePath(QStringLiteral("out.xlsx"));
    text1(0)->setText(path);
    clickCell(1, true);
    clickCell(2, false);
    EXPECT_EQ(window->Grid1()->TextMatrix(1, 1), QString());
    EXPECT_EQ(window->Grid1()->ColAlignment(2), 4);
    window->findChild<QCheckBox *>(QStringLiteral("Check1"))->setChecked(true);
    press("输出");

    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_TRUE(window.isNull() || !window->isVisible());
    EXPECT_EQ(opened, QStringList{path});
    const QJsonObject cells =
        dumpWorkbook(
            path)[QStringLiteral("data")][QStringLiteral("房产数据模板")][QStringLiteral("cells")]
            .toObject();
    const std::pair<const char *, QJsonValue> expected[] = {
        {"A1", QStringLiteral("编号")}, {"B1", QStringLiteral("备注")},
        {"C1", QStringLiteral("电话")}, {"A2", 1},
        {"B2", QStringLiteral("x")},    {"C2", 755123},
        {"D1", QJsonValue::Undefined},  {"D2", QJsonValue::Undefined},
    };
    for (const auto &[ref, value] : expected)
        EXPECT_EQ(cells[QString::fromLatin1(ref)][QStringLiteral("value")], value) << ref;
}

TEST_F(ExportWindowTest, MessagesAndFailuresKeepTheWindowAndTheFile)
{
    const QString legacy = dir.filePath(QStringLiteral("old.xls"));
    QFile file(legacy);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromHex("d0cf11e0a1b11ae1") + QByteArray(504, '\0'));
    file.close();
    const QString book = dir.filePath(QStringLiteral("book.xlsx"));
    quorvale::testing::makeWorkbookFixture(book);
    const QString needTitle = QStringLiteral("请输入标题内容");
    const QString failed = QStringLiteral("输出到Execl失败: ");
    const QString noneMarked = failed + QStringLiteral("没有选中要输出的列");
    struct Case {
        QString path, title, sheet;
        QList<MsgBoxCall> boxes; // a failure's description follows the prompt given
        bool unmarkAll = false;
    } cases[] = {
        {book, {}, QStringLiteral("表"), {{needTitle, 0, programTitle()}}},
        {book, QStringLiteral("标题"), {}, {{needTitle, 0, programTitle()}}},
        {{},
         QStringLiteral("标题"),
         QStringLiteral("表"),
         {{QStringLiteral("请确定输出的文件名"), 0, exeName()}, {failed, 64, programTitle()}}},
        {legacy, QStringLiteral("标题"), QStringLiteral("表"), {{failed, 64, programTitle()}}},
        {book, QStringLiteral("标题"), QStringLiteral("坏/名"), {{failed, 64, programTitle()}}},
        {dir.filePath(QStringLiteral("missing/new.xlsx")),
         QStringLiteral("标题"),
         QStringLiteral("表"),
         {{failed, 64, programTitle()}}},
        // Nothing marked leaves no last cell for the borders: the export fails.
        {book, QStringLiteral("标题"), QStringLiteral("表"), {{noneMarked, 64, programTitle()}}, true},
        {dir.filePath(QStringLiteral("new.xlsx")),
         QStringLiteral("标题"),
         QStringLiteral("表"),
         {{noneMarked, 64, programTitle()}},
         true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.path.toStdString() + " " + c.sheet.toStdString());
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
    const QString existing = dir.filePath(QStringLiteral("old.xls"));
    QFile touch(existing);
    ASSERT_TRUE(touch.open(QIODevice::WriteOnly));
    touch.close();
    QString folder, filter, answer;
    ExportWindow::setFileDialogHook([&](QWidget *, const QString &f, const QString &flt) {
        folder = f;
        filter = flt;
        return answer;
    });
    configured(ExportWindow::Variant::Customer, source);
    text1(0)->setText(QStringLiteral("before"));
    const std::pair<QString, QString> cases[] = {
        {{}, QStringLiteral("before")},
        {dir.filePath(QStringLiteral("new")), dir.filePath(QStringLiteral("new.xlsx"))},
        {dir.filePath(QStringLiteral("new.xls")), dir.filePath(QStringLiteral("new.xlsx"))},
        {existing, existing},
        {dir.filePath(QStringLiteral("a.xlsx")), dir.filePath(QStringLiteral("a.xlsx"))},
    };
    for (const auto &[chosen, shown] : cases) {
        answer = chosen;
        window->findChild<QPushButton *>(QStringLiteral("Command1"))->click();
        EXPECT_EQ(text1(0)->text(), shown);
    }
    EXPECT_EQ(folder, QCoreApplication::applicationDirPath());
    EXPECT_TRUE(filter.startsWith(QStringLiteral("Excel Flie *.xls (")));
    EXPECT_TRUE(filter.contains(QStringLiteral("*.xlsx")));
    EXPECT_TRUE(filter.contains(QStringLiteral("All flie *.*")));
}
