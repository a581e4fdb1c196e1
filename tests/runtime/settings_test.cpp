#include "runtime/settings.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <gtest/gtest.h>
#include <memory>

using namespace quorvale;

namespace {

QString iniPath()
{
    return QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).filePath(QStringLiteral("Quorvale.ini"));
}

// Where the values live, read without the program: the per-user program
// settings branch of the registry on Windows, an INI file elsewhere.
std::unique_ptr<QSettings> store()
{
#ifdef Q_OS_WIN
    return std::make_unique<QSettings>(
        QStringLiteral("HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\Quorvale"),
        QSettings::NativeFormat);
#else
    return std::make_unique<QSettings>(iniPath(), QSettings::IniFormat);
#endif
}

// As an installer writes them: a .reg file or reg.exe on Windows, a text file
// elsewhere, where a "host,port" server is not quoted.
void writeByHand()
{
#ifdef Q_OS_WIN
    auto settings = store();
    settings->setValue(QStringLiteral("DBConfig/Svr"), QStringLiteral("10.0.0.5,1433"));
    settings->setValue(QStringLiteral("DBConfig/UID"), QStringLiteral("sa"));
    settings->setValue(QStringLiteral("DBConfig/PWD"), QStringLiteral("p@ss word"));
    settings->setValue(QStringLiteral("DBConfig/DBname"), QStringLiteral("wygl"));
#else
    quorvale::testing::writeBytes(
        iniPath(), "[DBConfig]\nSvr=10.0.0.5,1433\nUID=sa\nPWD=p@ss word\nDBname=wygl\n");
#endif
}

void clearStore()
{
    store()->clear();
    QFile::remove(iniPath());
}

QString get(const QString &key, const QString &section = QStringLiteral("DBConfig"))
{
    return SettingsStore::GetSetting(QStringLiteral("Quorvale"), section, key);
}

} // namespace

TEST(SettingsStore, MissingKeyIsEmptyAndSavedValuesComeBack)
{
    clearStore();
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
    EXPECT_EQ(store()->value(QStringLiteral("DBConfig/DBname")).toString(),
              QStringLiteral("物业管理"));
    clearStore();
}

TEST(SettingsStore, ReadsValuesAnInstallerWrote)
{
    writeByHand();
    EXPECT_EQ(get(QStringLiteral("Svr")), QStringLiteral("10.0.0.5,1433"));
    EXPECT_EQ(get(QStringLiteral("UID")), QStringLiteral("sa"));
    EXPECT_EQ(get(QStringLiteral("PWD")), QStringLiteral("p@ss word"));
    EXPECT_EQ(get(QStringLiteral("DBname")), QStringLiteral("wygl"));
    clearStore();
}
