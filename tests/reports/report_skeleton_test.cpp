#include "reportwindowfixture.h"

#include "reports/windows/frm收款日报表.h"
#include "reports/windows/frm财务数据欠收表房产.h"
#include "reports/windows/frm财务数据欠收表车位.h"
#include "reports/windows/frm财务数据预收表房产.h"
#include "reports/windows/frm财务数据预收表车位.h"
#include "reports/windows/frm车位基础表.h"
#include "reports/windows/reportwindows.h"
#include "output/windows/exportwindow.h"
#include "support/chineseapplication.h"
#include "session/windows/mdiform1.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QDir>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSqlDriver>
#include <QStyle>
#include <QStyleOptionTitleBar>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <sqlite3.h>

namespace quorvale {
namespace {

// The six report windows by their menu items, in menu order.
const QStringList kReportItems = {"房产客户", "车位客户", "财务数据欠收表房产",
                                  "财务数据欠收表车位", "财务数据预收表车位", "财务数据预收表房产"};

class ReportSkeleton : public CustomerFixture {
  protected:
    // A main window of the size given, shown, its menu wired to the reports.
    std::unique_ptr<MdiForm1> mainWindow(int width, int height)
    {
        auto main = std::make_unique<MdiForm1>(session, desktop, reportWindowFactories());
        main->resize(width, height);
        main->show();
        return main;
    }

    // Office 01 with `count` rooms numbered 101, 102, ...
    void officeWithRooms(int count)
    {
        office("01", "一区");
        db.insert("楼表", {{"L_ID", 1}, {"管理处", "01"}, {"地址1", "1"}, {"字1", "栋"}});
        QList<QVariantList> rooms;
        for (int i = 1; i <= count; ++i)
            rooms.append({i, 1, QString::number(100 + i)});
        db.insertRows("室表", {"S_ID", "L_ID", "室"}, rooms);
    }

    static QStringList items(const ReportWindow *w)
    {
        QStringList out;
        for (int i = 0; i < w->combo1()->count(); ++i)
            out << w->combo1()->itemText(i) + "=" + w->combo1()->itemData(i).toString();
        return out;
    }

    static void clickRow(FlexGrid *grid, int row)
    {
        // The header row sits in the horizontal header, so data row r is model row r - 1.
        const QModelIndex index = grid->model()->index(row - 1, 1);
        grid->scrollTo(index);
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(index).center());
    }
};

TEST_F(ReportSkeleton, OfficeListFollowsTheAuditRightInCodeOrder)
{
    office("10", "十区", QVariant());
    office("1A", "商场", 1);
    office("2", "二区", 0);
    office("3", "外区", 0, "D2");
    struct Case {
        bool audit;
        QStringList expected;
    };
    const QList<Case> cases = {
        {false, {"2 二区=0", "10 十区=0", "1A 商场=1"}},
        {true, {"2 二区=0", "3 外区=0", "10 十区=0", "1A 商场=1"}},
    };
    for (const Case &c : cases) {
        changeSession([&c](Session &s) { s.HasProjectAudit = c.audit; });
        const QList<ReportWindow *> opened = {open<frm收款日报表>(), open<frm车位基础表>()};
        for (ReportWindow *w : opened) {
            EXPECT_EQ(items(w), c.expected) << w->objectName().toStdString() << c.audit;
            EXPECT_EQ(w->combo1()->currentText(), "");
            EXPECT_EQ(w->statusPanelText(2), " 张三");
            EXPECT_EQ(w->statusPanelText(4), " 物业一部");
            EXPECT_EQ(w->statusPanelText(5), " 主管");
            EXPECT_EQ(w->grid()->Rows(), 1);
        }
    }
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(ReportSkeleton, EveryWindowHasItsDesignedHeadingBlanksIncluded)
{
    // The owner, contract and tenant columns both customer sheets end with.
    const QString customerTail =
        "|<性别|<手机号码|<商务电话|<联系电话|<工作单位|<紧急联系人|<紧急联系电话|<业主原住址"
        "|<邮政编码|<企业法人代表|<企业联系人|<企业联系电话|<企业传真号码|<企业联系地址"
        "|<企业邮政编码|<出售合同号|<许可证号|<合同上名称|<合同上证件号码|<签约日期|<起始日期"
        "|<结束日期|<售楼单价|<售楼总价|<交付日期|<入伙通知书编号|<开户银行|<银行卡号"
        "|<入伙日期|<装修申请日期|<装修状态|<入住日期|<当前是否出租|<出租签约日期|<租户类型"
        "|<承租人姓名|<承租人企业名称|<承租人证件号码|<承租人性别|<承租人证件类型"
        "|<承租人手机号码|<承租人商务电话|<承租人原住址|<承租人邮政编码|<承租人企业法人代表"
        "|<承租人企业联系人|<承租人联系电话|<承租人企业传真号码|<承租人企业联系地址"
        "|<承租人企业邮政编码";
    const QString advance =
        "房号|<收费对象类型|<收费项目|<收费标准名称|<单价|<计费周期起始日期|<计费周期结束日期"
        "|<应收日期|<应收金额|<减免金额|<减免类型|<已收金额|<缴款日期|<结算方式|<发票号码"
        "|<预收款余额|<预收款收取日期|<预收款结算方式|<预收款发票号码|<收费开始日期";
    const auto blanks = [](int n) { return QString(n, QLatin1Char(' ')); };
    const std::pair<ReportWindow *, QString> cases[] = {
        {open<frm收款日报表>(),
         "管理处    |<小区编号   |<小区名称     |<组团编号|<组团名称           |<大楼编号"
         "|<大楼名称|<单元编号|<单元名称|<楼层编号|<房间编号|<别墅编号|<储藏室编号|<计费面积"
         "|<是否是主房号|<客户性质|<个人业主名称|<企业业主名称|<证件类型|<证件号码|<房产性质" +
             customerTail},
        {open<frm车位基础表>(),
         "管理处     |<小区编号     |<小区名称       |<停车场编号  |<停车场名称       "
         "|<车区编号|<车区名称|<车位编号|<计费面积|<客户性质|<个人业主名称|<企业业主名称"
         "|<证件类型|<证件号码" +
             customerTail},
        {open<frm财务数据欠收表房产>(),
         "房号|<收费对象类型|<收费项目|<收费标准名称|<单价|>计费周期起始日期|>计费周期结束日期"
         "|>应收日期|>应收金额|<减免金额|<减免类型|<已收金额|<缴款日期|<结算方式|<发票号码"},
        {open<frm财务数据欠收表车位>(),
         "房号" + blanks(65) + "|<收费对象类型|<收费对象客户姓名|<收费项目" + blanks(9) +
             "|<收费标准名称|<单价" + blanks(2) + "|<计费周期起始日期|<计费周期结束日期|<应收日期" +
             blanks(10) + "|>应收金额" + blanks(3) + "|<减免金额|<减免类型|<已收金额|<缴款日期" +
             blanks(3) + "|<结算方式" + blanks(7) + "|<发票号码" + blanks(13)},
        {open<frm财务数据预收表车位>(), advance},
        {open<frm财务数据预收表房产>(), advance},
    };
    for (const auto &[w, heading] : cases)
        EXPECT_EQ(w->grid()->FormatString(), heading) << w->objectName().toStdString();
}

TEST_F(ReportSkeleton, CommandsWithoutAnOfficeAskForOneAndExitStillCloses)
{
    auto *w = open<frm收款日报表>(); // department D1 runs no office
    ASSERT_EQ(w->combo1()->count(), 0);
    for (int index : {ReportWindow::Compute, ReportWindow::Export, ReportWindow::Print}) {
        boxes.clear();
        w->ReportCommand(index);
        ASSERT_EQ(boxes.size(), 1) << index;
        EXPECT_EQ(boxes[0].prompt, "请选择管理处！");
        EXPECT_EQ(boxes[0].title, "系统提示");
        EXPECT_EQ(boxes[0].style, vb::Information);
    }
    EXPECT_EQ(w->grid()->Rows(), 1);

    QPointer<ReportWindow> guard = w;
    boxes.clear();
    w->command1(ReportWindow::Close)->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(guard.isNull());
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(ReportSkeleton, ClickedRowIsPaintedMintAndThePreviousOneRestored)
{
    officeWithRooms(6);
    auto *w = open<frm收款日报表>();
    w->resize(900, 600);
    w->show();
    QCoreApplication::processEvents(); // the view hears of the rows from the event loop
    FlexGrid *grid = w->grid();

    // A click on a header-only grid paints nothing, not even the heading.
    QHeaderView *heading = grid->horizontalHeader();
    QTest::mouseClick(heading->viewport(), Qt::LeftButton, {},
                      QPoint(heading->sectionViewportPosition(2) + 5, heading->height() / 2));
    const QString plain = grid->palette().color(QPalette::Base).name();
    for (int c = 0; c < grid->Cols(); ++c)
        EXPECT_EQ(grid->cellBackColor(0, c).name(), plain) << c;
    EXPECT_EQ(w->highlightedRow(), 0);

    choose(w, "01");
    w->ReportCommand(ReportWindow::Compute);
    ASSERT_EQ(grid->Rows(), 7);
    const QColor original = grid->cellBackColor(3, 0);
    clickRow(grid, 3);
    clickRow(grid, 5);
    const QColor mint(0xD0, 0xFF, 0xFD);
    const QColor window = grid->palette().color(QPalette::Base);
    for (int c = 1; c < grid->Cols(); c += 7) {
        EXPECT_EQ(grid->cellBackColor(3, c), window) << c;
        EXPECT_EQ(grid->cellBackColor(5, c), mint) << c;
    }
    EXPECT_EQ(grid->cellBackColor(5, grid->Cols() - 1), mint);
    EXPECT_EQ(grid->cellBackColor(3, 0), original);
    EXPECT_EQ(grid->cellBackColor(5, 0), original);
    EXPECT_EQ(w->highlightedRow(), 5);

    // A new compute drops the rows, and their colours with them.
    w->ReportCommand(ReportWindow::Compute);
    ASSERT_EQ(grid->Rows(), 7);
    EXPECT_EQ(grid->cellBackColor(5, 1), window);
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(ReportSkeleton, DatabaseErrorMidFillKeepsTheRowsAlreadyRead)
{
    officeWithRooms(9);
    auto *w = open<frm收款日报表>();
    w->setFillChunkRows(2);
    // The engine fails on the read after the first chunk, as a dropped
    // connection would.
    auto *handle =
        *static_cast<sqlite3 *const *>(db.connection()->database().driver()->handle().constData());
    QObject::connect(w, &ReportWindow::rowsFilled, w, [handle](int) { sqlite3_interrupt(handle); });
    choose(w, "01");
    w->ReportCommand(ReportWindow::Compute);

    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].style, vb::Information);
    EXPECT_FALSE(boxes[0].title.isEmpty());
    EXPECT_TRUE(boxes[0].prompt.contains(boxes[0].title));
    const auto got = rows(*w->grid());
    ASSERT_EQ(got.size(), 2);
    EXPECT_EQ(got[0][10], "101");
    EXPECT_EQ(got[1][10], "102");
    EXPECT_FALSE(w->isBusy());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ReportSkeleton, LargeFillArrivesInChunksAndBlocksReentry)
{
    officeWithRooms(25);
    auto *w = open<frm收款日报表>();
    w->setFillChunkRows(10);
    QList<int> progress;
    int nested = 0;
    QObject::connect(w, &ReportWindow::rowsFilled, w, [&](int rows) {
        progress << rows;
        EXPECT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_FALSE(w->command1(ReportWindow::Compute)->isEnabled());
        // A second press while filling is ignored.
        const int before = w->grid()->Rows();
        w->ReportCommand(ReportWindow::Compute);
        nested += w->grid()->Rows() != before;
    });
    choose(w, "01");
    w->ReportCommand(ReportWindow::Compute);
    EXPECT_EQ(progress, QList<int>({10, 20, 25}));
    EXPECT_EQ(nested, 0);
    EXPECT_EQ(w->grid()->Rows(), 26);
    EXPECT_EQ(w->grid()->TextMatrix(25, 10), "125");
    EXPECT_TRUE(w->command1(ReportWindow::Compute)->isEnabled());
}

// 显示Excel on a desktop with no program for workbooks: the report window says so.
TEST_F(ReportSkeleton, AWorkbookNoProgramCanOpenIsSaidInTheStatusBar)
{
    officeWithRooms(3);
    auto *w = open<frm收款日报表>();
    choose(w, "01");
    w->ReportCommand(ReportWindow::Compute);
    QStringList offered;
    desktop->openFile = [&](const QString &path) {
        offered << path;
        return false;
    };
    w->ReportCommand(ReportWindow::Export);
    auto *exporter = ExportWindow::shared(ExportVariant::Customer, desktop, nullptr);
    QTemporaryDir dir;
    const QString path = dir.filePath("一区.xlsx");
    exporter->Text1(0)->setText(path);
    exporter->findChild<QCheckBox *>("Check1")->setChecked(true);
    exporter->findChild<QAction *>("输出")->trigger();
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_EQ(offered, QStringList{path});
    EXPECT_EQ(w->findChild<QLabel *>("ProgressPanel")->text(),
              "已输出到 " + QDir::toNativeSeparators(path) + "，但本机没有可以打开Excel工作簿的程序");
}

TEST_F(ReportSkeleton, MenuItemsOpenOneMaximisedWindowEach)
{
    auto *main = new MdiForm1(session, desktop, reportWindowFactories());
    main->show();
    struct Case {
        QString item, window, caption;
    };
    const QList<Case> cases = {{"房产客户", "frm收款日报表", "房产客户-基础数据表"},
                               {"车位客户", "frm车位基础表", "车位客户-基础数据表"}};
    for (const Case &c : cases) {
        QWidget *first = main->showWindow(c.item);
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(main->showWindow(c.item), first);
        EXPECT_EQ(first->objectName(), c.window);
        EXPECT_EQ(first->windowTitle(), c.caption);
        auto *sub = qobject_cast<QMdiSubWindow *>(first->parentWidget());
        ASSERT_NE(sub, nullptr);
        EXPECT_TRUE(sub->isMaximized());
        EXPECT_EQ(first->font().family(), "微软雅黑");
        // The grid fills the window above the bottom strip.
        auto *report = static_cast<ReportWindow *>(first);
        QCoreApplication::processEvents();
        EXPECT_GT(report->grid()->height(), 0);
        EXPECT_LE(report->grid()->geometry().bottom(), report->picture1()->y());
        EXPECT_LT(report->grid()->geometry().right(), report->width());
    }
    EXPECT_EQ(main->mdiArea()->subWindowList().size(), 2);
    delete main;
}

// Six minimized reports are told apart by their captions, which Qt does not
// elide. (ctest runs this on a virtual display too, in the fonts a desktop has.)
TEST_F(ReportSkeleton, MinimizedWindowsShowTheirWholeCaption)
{
    testing::ChineseApplication program; // its font, in which captions are drawn
    // The program's icon, which each frame draws before the caption.
    QPixmap icon(64, 64);
    icon.fill(Qt::darkBlue);
    const QIcon before = QApplication::windowIcon();
    QApplication::setWindowIcon(QIcon(icon));
    const auto main = mainWindow(1400, 800);
    for (const QString &item : kReportItems) {
        auto *sub = qobject_cast<QMdiSubWindow *>(main->showWindow(item)->parentWidget());
        ASSERT_NE(sub, nullptr);
        sub->showMinimized();
        QCoreApplication::processEvents();
        // The caption as the frame draws it: elided to the label of its
        // title bar, which lies inside the frame's 4 px border, and again by
        // the style to that label less 14 px.
        QStyleOptionTitleBar bar;
        bar.initFrom(sub);
        const int border = 4;
        bar.rect = QRect(border, border, sub->width() - 2 * border,
                         sub->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, sub));
        bar.titleBarFlags = sub->windowFlags();
        bar.titleBarState = sub->windowState();
        bar.text = sub->windowTitle();
        bar.icon = sub->windowIcon();
        const int label =
            sub->style()->subControlRect(QStyle::CC_TitleBar, &bar, QStyle::SC_TitleBarLabel, sub)
                .width();
        QFont bold = QApplication::font("QMdiSubWindowTitleBar");
        bold.setBold(true);
        for (const QFont &font : {QApplication::font("QMdiSubWindowTitleBar"), bold})
            EXPECT_EQ(QFontMetrics(font).elidedText(sub->windowTitle(), Qt::ElideRight, label - 14),
                      sub->windowTitle())
                << "in " << sub->width() << " px";
    }
    QApplication::setWindowIcon(before);
}

// A report opens maximized; "restore down" gives it its normal size, the
// one it was designed at or the one it last had, never a strip.
TEST_F(ReportSkeleton, RestoringAWindowGivesItsNormalSize)
{
    const auto main = mainWindow(1400, 900);
    QWidget *report = main->showWindow("财务数据欠收表房产");
    auto *sub = qobject_cast<QMdiSubWindow *>(report->parentWidget());
    ASSERT_NE(sub, nullptr);
    QCoreApplication::processEvents();
    ASSERT_TRUE(sub->isMaximized());
    const QSize designed(800, 500);
    sub->showNormal();
    QCoreApplication::processEvents();
    EXPECT_GE(report->width(), designed.width());
    EXPECT_GE(report->height(), designed.height());

    sub->resize(sub->size() + QSize(100, 120));
    const QSize normal = sub->size();
    sub->showMaximized();
    sub->showMinimized();
    sub->showNormal();
    QCoreApplication::processEvents();
    EXPECT_EQ(sub->size(), normal);
}

// However small the clerk makes a report window, no label, option or button
// of its strip is cut short.
TEST_F(ReportSkeleton, EveryLabelIsWholeAtTheSmallestSize)
{
    testing::ChineseApplication program; // its font, in which the texts are laid out
    const auto main = mainWindow(1600, 900);
    for (const QString &item : kReportItems) {
        SCOPED_TRACE(item.toStdString());
        QWidget *report = main->showWindow(item);
        auto *sub = qobject_cast<QMdiSubWindow *>(report->parentWidget());
        ASSERT_NE(sub, nullptr);
        sub->showNormal();
        sub->resize(300, 200);
        QCoreApplication::processEvents();
        auto *strip = report->findChild<QWidget *>("Picture1");
        for (QWidget *w : strip->findChildren<QWidget *>()) {
            if (!w->isVisibleTo(report))
                continue;
            // A label or option needs its size hint, which is its whole text; a
            // push button its text and the style's margins.
            int needed = 0;
            if (qobject_cast<QLabel *>(w) || qobject_cast<QRadioButton *>(w))
                needed = w->sizeHint().width();
            else if (auto *button = qobject_cast<QPushButton *>(w))
                needed = button->fontMetrics().horizontalAdvance(button->text()) +
                         2 * button->style()->pixelMetric(QStyle::PM_ButtonMargin);
            EXPECT_GE(w->width(), needed)
                << w->objectName().toStdString() << " is cut at " << report->width() << " px";
        }
    }
}

} // namespace
} // namespace quorvale
