#include "runtime/settings.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

QString iniPath()
{
    return QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).filePath(QStringLiteral("Quorvale.ini"));
}

QString get(const QString &key, const QString &section = QStringLiteral("DBConfig"))
{
    return SettingsStore::GetSetting(QStringLiteral("Quorvale"), section, key);
}

} // namespace

TEST(SettingsStore, MissingKeyIsEmptyAndSavedValuesComeBack)
{
    QFile::remove(iniPath());
    EXPECT_EQ(get(QStringLiteral("Svr")), QString(QLatin1String("")));
    EXPECT_FALSE(get(QStringLiteral("Svr")).isNull());
    SettingsStore::SaveSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                               QStringLiteral("DBname"), QStringLiteral("物业管理"));
    SettingsStore::SaveSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                               QStringLiteral("Svr"), QStringLiteral("db01,1433"));
    EXPECT_EQ(get(QStringLiteral("DBname")), QStringLiteral("物业管理"));
    EXPECT_EQ(get(QStringLiteral("Svr")), QStringLiteral("db01,1433"));
    // Another section of the same application does not see them.
    EXPECT_EQ(get(QStringLiteral("Svr"), QStringLiteral("Other")), QString());
    EXPECT_TRUE(QFile::exists(iniPath()));
    QFile::remove(iniPath());
}

// An installer writes the file by hand; a "host,port" server is not quoted there.
TEST(SettingsStore, ReadsHandWrittenIniFile)
{
    quorvale::testing::writeBytes(
        iniPath(), "[DBConfig]\nSvr=10.0.0.5,1433\nUID=sa\nPWD=p@ss word\nDBname=wygl\n");
    EXPECT_EQ(get(QStringLiteral("Svr")), QStringLiteral("10.0.0.5,1433"));
    EXPECT_EQ(get(QStringLiteral("UID")), QStringLiteral("sa"));
    EXPECT_EQ(get(QStringLiteral("PWD")), QStringLiteral("p@ss word"));
    EXPECT_EQ(get(QStringLiteral("DBname")), QStringLiteral("wygl"));
    QFile::remove(iniPath());
}
