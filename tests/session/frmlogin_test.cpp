#include "runtime/runtimeerror.h"
#include "runtime/settings.h"
#include "sessiontesting.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QSettings>
#include <QTest>
#include <gmock/gmock.h>

using namespace quorvale;
using ::testing::UnorderedElementsAre;

namespace {

class Login : public SessionTest {
  protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        db = makeStaffDb();
        login = new FrmLogin(desktop);
        login->load(QString());
    }

    void signIn(const QString &user, const QString &password)
    {
        login->findChild<QLineEdit *>("TxtUser")->setText(user);
        login->findChild<QLineEdit *>("txtPassword")->setText(password);
        login->signIn();
    }

    QListWidget *list1() const { return login->findChild<QListWidget *>("List1"); }
    static bool mainShown()
    {
        const MdiForm1 *main = quorvale::testing::topLevelWindow<MdiForm1>();
        return main && main->isVisible();
    }

    std::unique_ptr<FixtureDb> db;
    FrmLogin *login = nullptr;
};

// The values the main window was given.
std::string session()
{
    const MdiForm1 *main = quorvale::testing::topLevelWindow<MdiForm1>();
    if (!main)
        return "(no main window)";
    const Session &s = *main->session();
    QStringList values;
    for (int i = 0; i < Session::ValueCount; ++i)
        values << s.value(i);
    return values.join(QLatin1Char('|')).toStdString();
}

} // namespace

TEST_F(Login, RefusalsKeepTheLoginWindow)
{
    struct Case {
        const char *user;
        const char *password;
        const char *prompt;
        int style;
    };
    const Case cases[] = {
        {"", "123", "用户名不能为空!", vb::Information},
        {"1001", "", "密码不能为空!", vb::Information},
        {"1001", "124", "用户名或密码不正确,请重新输入!", vb::Information},
        {" 1001", "123", "用户名或密码不正确,请重新输入!", vb::Information},
        // The built-in super-user is matched exactly; anything else is staff.
        {"System", "velKo", "用户名或密码不正确,请重新输入!", vb::Information},
        {"system", "velko", "用户名或密码不正确,请重新输入!", vb::Information},
        {"1004", "000", "对不起，您没有岗位，请选择系统管理员", vb::OKOnly},
        // A leaving date does not stop the password check, only the posts.
        {"1003", "789", "对不起，您没有岗位，请选择系统管理员", vb::OKOnly},
    };
    for (const Case &c : cases) {
        boxes.clear();
        signIn(QString::fromUtf8(c.user), QString::fromUtf8(c.password));
        ASSERT_EQ(boxes.size(), 1u) << c.user;
        EXPECT_EQ(boxes[0].prompt, QString::fromUtf8(c.prompt)) << c.user;
        EXPECT_EQ(boxes[0].style, c.style) << c.user;
        EXPECT_EQ(boxes[0].title, programTitle()) << c.user;
        EXPECT_FALSE(mainShown()) << c.user;
        EXPECT_EQ(quorvale::testing::topLevelWindow<FrmLogin>(), login);
    }
    EXPECT_TRUE(ends.empty());
}

TEST_F(Login, OnePostIsChosenAtOnce)
{
    signIn("1002", "  456 ");
    EXPECT_TRUE(boxes.empty());
    EXPECT_FALSE(list1()->isVisibleTo(login));
    EXPECT_EQ(session(), "1002|李四|B01|第一管理处|G01|主任|D1|管理处类|P1|管理类");
    EXPECT_TRUE(mainShown());
    EXPECT_EQ(quorvale::testing::topLevelWindow<FrmLogin>(), nullptr);
}

TEST_F(Login, SeveralPostsAreOfferedAndChosenByDoubleClick)
{
    signIn("1001", "123");
    EXPECT_TRUE(boxes.empty());
    EXPECT_FALSE(mainShown());
    ASSERT_TRUE(list1()->isVisibleTo(login));
    EXPECT_TRUE(login->findChild<QLabel *>("Label2")->isVisibleTo(login));
    QStringList entries;
    for (int i = 0; i < list1()->count(); ++i)
        entries << list1()->item(i)->text();
    // The post he left (收费员) is not offered; the entries keep the blanks.
    const QString cashierEntry = " 财务部 出纳  (兼职)";
    EXPECT_THAT(entries, UnorderedElementsAre("第一管理处    主任 (主要)", cashierEntry));

    const int cashier = entries.indexOf(cashierEntry);
    list1()->setCurrentRow(cashier);
    login->choosePost();
    EXPECT_EQ(session(), "1001|张三|B02|财务部|G02|出纳|D1|管理处类|P1|管理类");
    EXPECT_TRUE(mainShown());
}

TEST_F(Login, FocusSelectsTheWholeTextAndOnTheUserNumberHidesThePostList)
{
    signIn("1001", "123");
    ASSERT_TRUE(list1()->isVisibleTo(login));
    for (const char *name : {"txtPassword", "TxtUser"}) {
        auto *box = login->findChild<QLineEdit *>(QString::fromLatin1(name));
        box->deselect();
        // A click gives no selection of its own, unlike the Tab key.
        QFocusEvent focusIn(QEvent::FocusIn, Qt::MouseFocusReason);
        QCoreApplication::sendEvent(box, &focusIn);
        QCoreApplication::processEvents();
        EXPECT_EQ(box->selectionStart(), 0) << name;
        EXPECT_EQ(box->selectedText(), box->text()) << name;
        EXPECT_EQ(list1()->isVisibleTo(login), box->objectName() == "txtPassword") << name;
    }
}

TEST_F(Login, EnterMovesToTheNextControlWithoutSigningIn)
{
    login->show();
    login->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(login));
    auto *user = login->findChild<QLineEdit *>("TxtUser");
    user->setFocus();
    QTest::keyClick(user, Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "txtPassword");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "cmdOK");
    // Signing in with both boxes empty would have said so.
    EXPECT_TRUE(boxes.empty());
}

TEST_F(Login, SuperUserNeedsNoEmployeeRow)
{
    signIn("system", "velKo");
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(session(), "超级用户|||||||||");
    EXPECT_TRUE(mainShown());
}

TEST_F(Login, EveryPressOpensAFreshConnectionAndKeepsOnlyTheName)
{
    Session &s = login->session();
    s.CurUserName = "前一位";
    s.CurDeptCode = "X";
    s.CurPostCode = "Y";
    signIn("1001", "bad");
    const ConnectionPtr first = s.DbConn;
    ASSERT_TRUE(first);
    EXPECT_EQ(s.CurUserName, "前一位");
    EXPECT_TRUE(s.CurDeptCode.isEmpty());
    EXPECT_TRUE(s.CurPostCode.isEmpty());

    signIn("1001", "bad again");
    EXPECT_NE(s.DbConn, first);
    EXPECT_EQ(s.DbConn->ConnectionString,
              QStringLiteral("Provider=SQLOLEDB.1;Password=secret;Persist Security Info=False;User "
                             "ID=sa;Initial Catalog='quorvale';Data Source='") +
                  db->server() + "'");
}

TEST_F(Login, VersionLabel)
{
    EXPECT_EQ(login->findChild<QLabel *>("Label1")->text(),
              QStringLiteral("V%1.%2版").arg(QUORVALE_VERSION_MAJOR).arg(QUORVALE_VERSION_MINOR));
}

TEST_F(Login, CommandLineSkipsTheLoginWindow)
{
    struct Case {
        QString args;
        QString lastValue;
    };
    const Case cases[] = {
        {"1002,李四,B01,第一管理处,G01,主任,D1,管理类,P1, 管理类 ", " 管理类 "},
        {"1002,李四,B01,第一管理处,G01,主任,D1,管理类,P1,管理类,extra", "管理类"},
    };
    for (const Case &c : cases) {
        QPointer<FrmLogin> started = new FrmLogin(desktop);
        EXPECT_FALSE(started->load(c.args));
        ASSERT_TRUE(mainShown());
        const Session &s = *quorvale::testing::topLevelWindow<MdiForm1>()->session();
        EXPECT_EQ(s.CurUserNo, "1002");
        EXPECT_EQ(s.CurPostCode, "G01");
        EXPECT_EQ(s.CurPostClassName, c.lastValue);
        EXPECT_TRUE(s.DbConn && s.DbConn->isOpen());
        EXPECT_TRUE(started.isNull()) << "the login window is gone";
        delete quorvale::testing::topLevelWindow<MdiForm1>();
    }
    EXPECT_TRUE(boxes.empty());
}

TEST_F(Login, CommandLineTextIsTheArgumentsAfterTheProgram)
{
    const QStringList arguments = {"/opt/quorvale", "a,b", "c"};
    EXPECT_EQ(commandLineText(arguments), "a,b c");
    EXPECT_TRUE(commandLineText({"/opt/quorvale"}).isEmpty());
    // An administrator can close the door the command line opens.
    for (const auto &[setting, honoured] : {std::pair{"", true}, {"1", true}, {"0", false}}) {
        SettingsStore::SaveSetting("Quorvale", "DBConfig", "AllowCommandLineSession",
                                   QString::fromLatin1(setting));
        EXPECT_EQ(sessionCommandLine(arguments), honoured ? "a,b c" : QString()) << setting;
    }
}

TEST_F(Login, CancelEndsTheProgram)
{
    login->cancel();
    EXPECT_EQ(ends, std::vector<int>{0});
}

using Connect = SessionTest;

TEST_F(Connect, MissingSettingsFailTheOpenWithEmptyValues)
{
#ifndef Q_OS_WIN
    QSettings(QSettings::IniFormat, QSettings::UserScope, "Quorvale").remove("DBConfig");
#endif
    Session session;
    EXPECT_THROW(ConnectDatabase(session), RuntimeError);
    EXPECT_EQ(session.DbConn->ConnectionString,
              QStringLiteral("Provider=SQLOLEDB.1;Password=;Persist Security "
                             "Info=False;User ID=;Initial Catalog='';Data Source=''"));
    EXPECT_TRUE(boxes.empty());
}
