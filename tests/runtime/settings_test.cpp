#include "runtime/settings.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

QString iniPath()
{
    return QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).filePath(QStringLiteral("Quorvale.ini"));
}

} // namespace

TEST(SettingsStore, MissingKeyIsEmptyAndSavedValuesComeBack)
{
    QFile::remove(iniPath());
    EXPECT_EQ(SettingsStore::GetSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                                        QStringLiteral("Svr")),
              QString(QLatin1String("")));
    EXPECT_FALSE(SettingsStore::GetSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                                           QStringLiteral("Svr"))
                     .isNull());
    SettingsStore::SaveSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                               QStringLiteral("DBname"), QStringLiteral("物业管理"));
    SettingsStore::SaveSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                               QStringLiteral("Svr"), QStringLiteral("db01,1433"));
    EXPECT_EQ(SettingsStore::GetSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                                        QStringLiteral("DBname")),
              QStringLiteral("物业管理"));
    EXPECT_EQ(SettingsStore::GetSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                                        QStringLiteral("Svr")),
              QStringLiteral("db01,1433"));
    // Another section of the same application does not see them.
    EXPECT_EQ(SettingsStore::GetSetting(QStringLiteral("Quorvale"), QStringLiteral("Other"),
                                        QStringLiteral("Svr")),
              QString());
    EXPECT_TRUE(QFile::exists(iniPath()));
    QFile::remove(iniPath());
}

// An installer writes the file by hand; a "host,port" server is not quoted there.
TEST(SettingsStore, ReadsHandWrittenIniFile)
{
    QFile file(iniPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("[DBConfig]\nSvr=10.0.0.5,1433\nUID=sa\nPWD=p@ss word\nDBname=wygl\n");
    file.close();
    auto get = [](const char *key) {
        return SettingsStore::GetSetting(QStringLiteral("Quorvale"), QStringLiteral("DBConfig"),
                                         QString::fromLatin1(key));
    };
    EXPECT_EQ(get("Svr"), QStringLiteral("10.0.0.5,1433"));
    EXPECT_EQ(get("UID"), QStringLiteral("sa"));
    EXPECT_EQ(get("PWD"), QStringLiteral("p@ss word"));
    EXPECT_EQ(get("DBname"), QStringLiteral("wygl"));
    QFile::remove(iniPath());
}
