#include "runtime/settings.h"
#include "support/adminprocess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

int lineCount(const QString &text)
{
    return int(text.count('\n')) + (text.isEmpty() || text.endsWith('\n') ? 0 : 1);
}

} // namespace

TEST(AdminCli, BadArgumentsGiveOneLineAndStatus2)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("x.db");
    const QList<QStringList> cases = {
        {},
        {"bogus"},
        {"create-db"},
        {"create-db", file, "second"},
        {"create-db", file, "--scale"},
        {"create-db", file, "--scale", "many"},
        {"create-db", file, "--scale", "0"},
        {"create-db", file, "--demo=yes"},
        {"create-db", file, "--frobnicate"},
        {"config", "--server", "s", "--login", "l", "--password", "p"},
        {"config", "--server", "s", "--login", "l", "--password", "p", "--database", "d", "extra"},
        {"make-background"},
        {"make-icon"},
        {"make-icon", "--size", "8", file + ".png"},
        {"make-icon", "--size", "big", file + ".png"},
        {"help", "bogus"},
        {"--version", "create-db"},
    };
    for (const QStringList &arguments : cases) {
        const auto run = quorvale::testing::runAdmin(arguments);
        SCOPED_TRACE(arguments.join(' ').toStdString());
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(lineCount(run.err), 1) << run.err.toStdString();
    }
    EXPECT_FALSE(QFile::exists(file));
}

TEST(AdminCli, FileErrorsGiveOneLineAndStatus4)
{
    QTemporaryDir dir;
    const QString existing = dir.filePath("there.db");
    QFile file(existing);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a database");
    file.close();
    for (const QStringList &arguments : {QStringList{"create-db", existing},
                                         QStringList{"create-db", dir.filePath("none/x.db")}}) {
        const auto run = quorvale::testing::runAdmin(arguments);
        EXPECT_EQ(run.status, 4) << run.err.toStdString();
        EXPECT_EQ(lineCount(run.err), 1) << run.err.toStdString();
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("not a database"));
}

TEST(AdminCli, CreatesDemoDatabaseAndReplacesOnlyWhenForced)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("demo.db");
    EXPECT_EQ(quorvale::testing::runAdmin({"create-db", path, "--demo"}).status, 0);
    const qint64 demoSize = QFileInfo(path).size();
    EXPECT_GT(demoSize, 0);
    EXPECT_EQ(quorvale::testing::runAdmin({"create-db", path, "--force"}).status, 0);
    EXPECT_LT(QFileInfo(path).size(), demoSize);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"demo.db"});
}

TEST(AdminCli, ConfigWritesTheFourSettingsTheProgramReadsForItsOwnerOnly)
{
    // Values with the characters a connection string or an INI file cares about.
    const auto run = quorvale::testing::runAdmin({"config", "--server", "db01\\SQL2019,1433",
                                                  "--login", "report user", "--password", "p;w'd=1",
                                                  "--database=物业管理"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    using quorvale::SettingsStore;
#ifndef Q_OS_WIN // there the values live in the user's own registry branch
    // The file holds the password.
    EXPECT_EQ(QFileInfo(qEnvironmentVariable("XDG_CONFIG_HOME") + "/Quorvale.ini").permissions(),
              QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
#endif
    EXPECT_EQ(SettingsStore::GetSetting("Quorvale", "DBConfig", "Svr"), "db01\\SQL2019,1433");
    EXPECT_EQ(SettingsStore::GetSetting("Quorvale", "DBConfig", "UID"), "report user");
    EXPECT_EQ(SettingsStore::GetSetting("Quorvale", "DBConfig", "PWD"), "p;w'd=1");
    EXPECT_EQ(SettingsStore::GetSetting("Quorvale", "DBConfig", "DBname"), "物业管理");
}
