#include "reports/windows/reportwindows.h"
#include "session/dbconnection.h"
#include "session/windows/frmlogin.h"
#include "session/windows/mdiform1.h"
#include "support/adminprocess.h"
#include "support/toplevelwindow.h"
#include "ui/desktop.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

// What the demo command does: a demo database and the settings that select
// it, made by the admin tool; then the program starts at the login window.
class DemoStart : public ::testing::Test {
  protected:
    void SetUp() override
    {
        const QString db = dir.filePath("demo.db");
        ASSERT_EQ(quorvale::testing::runAdmin({"create-db", db, "--demo"}).status, 0);
        ASSERT_EQ(quorvale::testing::runAdmin({"config", "--server", "sqlite:" + db, "--login",
                                               "demo", "--password", "demo", "--database", "q"})
                      .status,
                  0);
        desktop->answerBox = [this](const MsgBoxCall &call) {
            boxes << call.prompt;
            return vb::OK;
        };
    }
    void TearDown() override { delete quorvale::testing::topLevelWindow<MdiForm1>(); }

    QTemporaryDir dir;
    std::shared_ptr<Desktop> desktop = std::make_shared<Desktop>();
    QStringList boxes;
};

TEST_F(DemoStart, TheProgramStaysUpAtItsLoginWindow)
{
    QProcess program;
    program.start(quorvale::testing::builtProgram("quorvale"), {});
    ASSERT_TRUE(program.waitForStarted(30000));
    // A start-up failure ends the process at once through the run-time error report.
    EXPECT_FALSE(program.waitForFinished(3000)) << program.readAllStandardError().toStdString();
    program.kill();
    program.waitForFinished(10000);
}

TEST_F(DemoStart, ADemoUserSignsInToTheMainWindow)
{
    auto *login = new FrmLogin(desktop, reportWindowFactories()); // as the program's start does
    ASSERT_TRUE(login->load(QString()));
    login->show();
    login->findChild<QLineEdit *>("TxtUser")->setText("1002");
    login->findChild<QLineEdit *>("txtPassword")->setText("888888");
    login->signIn();
    ASSERT_TRUE(boxes.isEmpty()) << boxes.join('|').toStdString();
    QListWidget *posts = login->findChild<QListWidget *>("List1");
    ASSERT_EQ(posts->count(), 2);
    posts->setCurrentRow(0);
    login->choosePost();
    MdiForm1 *main = quorvale::testing::topLevelWindow<MdiForm1>();
    ASSERT_NE(main, nullptr);
    EXPECT_TRUE(main->isVisible());
    EXPECT_NE(main->showWindow("财务数据欠收表房产"), nullptr);
}

} // namespace
