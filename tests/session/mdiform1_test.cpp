#include "runtime/runtimeerror.h"
#include "session/signin.h"
#include "session/windows/frmabout.h"
#include "sessiontesting.h"
#include "ui/centerinmain.h"

#include <QAction>
#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

using namespace quorvale;

namespace {

class MainWindow : public SessionTest {
  protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        db = makeStaffDb();
        draft.DbConn = db->connection();
        draft.CurDeptCode = "B01";
        draft.CurPostCode = "G01";
    }

    // Signs the draft in (its audit right looked up) and opens the main window.
    MdiForm1 *open()
    {
        session = quorvale::signIn(draft);
        main = MdiForm1::open(session, desktop, windows);
        main->resize(900, 600);
        return main;
    }

    QAction *item(const QString &name) const
    {
        return main->findChild<QAction *>(name);
    }

    std::unique_ptr<FixtureDb> db;
    Session draft;
    SessionPtr session;
    WindowFactories windows; // what the main window is given to open
    MdiForm1 *main = nullptr;
};

void addAuditRows(FixtureDb &db, const QList<QVariantList> &rows)
{
    db.insertRows("专项审核权限表", {"ID", "类型", "部门代号", "岗位代号"}, rows);
}

} // namespace

TEST_F(MainWindow, MenuItemsInDesignedOrder)
{
    open();
    QStringList seen;
    for (QAction *a : main->menuItems())
        seen << a->objectName() + QLatin1Char('=') + (a->isSeparator() ? "-" : a->text());
    EXPECT_EQ(seen,
              (QStringList{"统计报表=统计报表", "房产客户=房产客户-基础数据表",
                           "车位客户=车位客户-基础数据表", "hb20190829=-",
                           "财务数据欠收表房产=财务数据欠收表（房产）",
                           "财务数据欠收表车位=财务数据欠收表（车位）", "line1=-",
                           "财务数据预收表房产=财务数据预收表（房产）",
                           "财务数据预收表车位=财务数据预收表（车位）", "退出系统=退出系统",
                           "退出=退出", "关于=关于", "关于软件=关于软件", "联系我们=联系我们"}));
}

// Signing in reads the audit right, before the main window opens.
TEST_F(MainWindow, LoadReadsTheAuditRightFromTheRowsOfDepartmentAndPost)
{
    struct Case {
        QList<QVariantList> rows;
        bool expected;
    };
    const Case cases[] = {
        {{}, false},
        {{{1, "项目管理", "B01", "G01"}}, true},
        {{{1, "项目管理", "B01", "G01"}, {2, "项目管理", "B01", "G01"}}, true},
        {{{1, "财务审核", "B01", "G01"}, {2, "项目管理", "B02", "G01"}}, false},
    };
    for (const Case &c : cases) {
        db->execute("DELETE FROM 专项审核权限表");
        if (!c.rows.isEmpty())
            addAuditRows(*db, c.rows);
        draft.HasProjectAudit = !c.expected;
        open();
        EXPECT_EQ(session->HasProjectAudit, c.expected) << c.rows.size();
        delete main;
    }
}

TEST_F(MainWindow, FailingLoadIsNotTrapped)
{
    db->execute("DROP TABLE 专项审核权限表");
    EXPECT_THROW(open(), RuntimeError);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(MainWindow, PrivilegesEnableOnlyGrantedItems)
{
    db->insertRows("岗位权限设置", {"id", "组代号", "岗位代号", "授权"},
                   {{1, "GR1", "G01", true},
                    {2, "GR2", "G01", true},
                    {3, "GR3", "G01", false},
                    {4, "GR2", "G02", true}});
    db->insertRows("GroupPrivilege", {"GroupID", "FormName", "Popedom", "Memo"},
                   {// One refusing and one granting row: the grant wins.
                    {"GR2", "房产客户", true, "报表"},
                    {"GR1", "房产客户", false, "报表"},
                    {"GR1", "车位客户", false, "报表"},
                    // The group is not granted to the post.
                    {"GR3", "财务数据欠收表房产", true, "报表"},
                    // Another module's rows do not apply.
                    {"GR2", "财务数据欠收表车位", true, "考勤"},
                    {"GR2", "联系我们", false, "报表"},
                    {"GR2", "不存在的菜单", true, "报表"},
                    // A Null value grants nothing, like a False one.
                    {"GR1", "关于软件", QVariant(), "报表"},
                    {"GR1", "财务数据预收表车位", QVariant(), "报表"},
                    {"GR2", "财务数据预收表车位", true, "报表"}});
    open()->权限设置("报表");
    EXPECT_TRUE(boxes.empty());

    QStringList enabled;
    for (QAction *a : main->menuItems()) {
        if (a->isEnabled())
            enabled << a->objectName();
    }
    // 联系我们 is exempt from switching off, but a row still sets it.
    EXPECT_EQ(enabled, QStringList({"房产客户", "hb20190829", "line1", "财务数据预收表车位",
                                    "退出系统", "退出", "关于"}));
}

TEST_F(MainWindow, PrivilegeErrorIsShownAndLeavesTheMenuAsFarAsItGot)
{
    open();
    db->execute("DROP TABLE GroupPrivilege");
    main->权限设置("报表");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_TRUE(boxes[0].prompt.startsWith("错误号："));
    EXPECT_TRUE(boxes[0].prompt.contains("\n错误描述："));
    EXPECT_FALSE(boxes[0].prompt.contains("错误号： "));
    EXPECT_EQ(boxes[0].title, "提示");
    EXPECT_EQ(boxes[0].style, vb::Information);
    EXPECT_FALSE(item("房产客户")->isEnabled());
    EXPECT_TRUE(item("关于软件")->isEnabled());
}

TEST_F(MainWindow, ClosingByTheFrameAsksTheQuitItemDoesNot)
{
    MdiForm1 *w = open();
    item("退出")->trigger();
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(ends, std::vector<int>{0});

    ends.clear();
    answer = vb::No;
    EXPECT_FALSE(w->close());
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].prompt, "确认要退出系统吗？");
    EXPECT_EQ(boxes[0].title, "系统提示");
    EXPECT_EQ(boxes[0].style, vb::YesNo + vb::Information);
    EXPECT_TRUE(w->isVisible());
    EXPECT_TRUE(ends.empty());

    answer = vb::Yes;
    EXPECT_TRUE(w->close());
    EXPECT_EQ(boxes.size(), 2u);
    EXPECT_EQ(ends, std::vector<int>{0});
}

TEST_F(MainWindow, AMenuItemsWindowExistsOnce)
{
    int made = 0;
    windows["车位客户"] = [&](const SessionPtr &, const DesktopPtr &) {
        ++made;
        auto *w = new QWidget;
        w->setObjectName("frm车位基础表");
        return w;
    };
    open();
    QMdiSubWindow *other = main->mdiArea()->addSubWindow(new QWidget);
    other->show();

    item("车位客户")->trigger();
    QWidget *first = main->openWindow("车位客户");
    ASSERT_NE(first, nullptr);
    main->mdiArea()->setActiveSubWindow(other);
    item("车位客户")->trigger();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(main->openWindow("车位客户"), first);
    EXPECT_EQ(main->mdiArea()->activeSubWindow()->widget(), first);

    // Closed by its own code, it is made anew next time.
    first->close();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(main->mdiArea()->subWindowList().size(), 1);
    item("车位客户")->trigger();
    EXPECT_EQ(made, 2);
}

TEST_F(MainWindow, CenterInMainPlacesAChildInTheMiddleOfTheClientArea)
{
    windows["财务数据欠收表车位"] = [](const SessionPtr &, const DesktopPtr &) {
        auto *w = new QWidget;
        w->resize(300, 200);
        return w;
    };
    open();
    QWidget *child = main->showWindow("财务数据欠收表车位");
    CenterInMain(child);
    const QRect frame = child->parentWidget()->geometry();
    const QPoint middle = main->mdiArea()->viewport()->rect().center();
    EXPECT_LE((frame.center() - middle).manhattanLength(), 2);
}

TEST_F(MainWindow, ItemsWithoutWindowOpenNothing)
{
    open();
    item("联系我们")->trigger();
    item("财务数据预收表车位")->trigger();
    EXPECT_TRUE(main->mdiArea()->subWindowList().isEmpty());
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(ends.empty());
}

TEST_F(MainWindow, BackgroundPictureIsReadAtEveryResize)
{
    QFile::remove(mainBackgroundPath());
    open();
    QMdiArea *area = main->mdiArea();
    const QBrush plain = area->background();
    EXPECT_TRUE(plain.texture().isNull());

    struct Step {
        const char *what;
        QColor picture; // invalid: no file
        QSize size;
    };
    const Step steps[] = {{"appears", Qt::red, {700, 500}},
                          {"changes", Qt::blue, {800, 550}},
                          {"goes", QColor(), {700, 500}}};
    for (const Step &step : steps) {
        QFile::remove(mainBackgroundPath());
        if (step.picture.isValid()) {
            QImage picture(32, 24, QImage::Format_RGB32);
            picture.fill(step.picture);
            ASSERT_TRUE(picture.save(mainBackgroundPath(), "BMP"));
        }
        main->resize(step.size);
        QCoreApplication::processEvents();
        const QPixmap shown = area->background().texture();
        if (step.picture.isValid()) {
            // Stretched over the whole client area.
            EXPECT_EQ(shown.size(), area->viewport()->size()) << step.what;
            EXPECT_EQ(shown.toImage().pixelColor(shown.width() - 1, 0).name(), step.picture.name())
                << step.what;
        } else {
            EXPECT_TRUE(area->background() == plain) << step.what;
        }
    }
    EXPECT_TRUE(boxes.empty());
}

TEST_F(MainWindow, AboutWindowShowsVersionAndHasNoSystemInformationHere)
{
    open();
    item("关于软件")->trigger();
    item("关于软件")->trigger();
    const auto abouts = main->findChildren<FrmAbout *>();
    ASSERT_EQ(abouts.size(), 1);
    EXPECT_EQ(abouts[0]->findChild<QLabel *>("Label7")->text(),
              QStringLiteral("系统信息设置系统%1.%2.%3")
                  .arg(QUORVALE_VERSION_MAJOR)
                  .arg(QUORVALE_VERSION_MINOR)
                  .arg(QUORVALE_VERSION_PATCH));
    // Escape closes it, as it closes a dialog.
    abouts[0]->show();
    QTest::keyClick(abouts[0], Qt::Key_Escape);
    EXPECT_FALSE(abouts[0]->isVisible());
#ifndef Q_OS_WIN
    StartSysInfo(*desktop);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].prompt, "此时系统信息不可用");
    EXPECT_EQ(boxes[0].style, vb::OKOnly);
#endif
}
