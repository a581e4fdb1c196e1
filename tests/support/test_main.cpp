#include "runtime/console.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cstring>

// Every test process gets its own settings folder, so no test can read or
// write the settings of the person running the suite. Windows keeps them in
// the registry: the Windows suite runs in a Wine prefix of its own, one test
// at a time, and each process starts and ends with none.
namespace {
void clearWindowsSettings()
{
#ifdef Q_OS_WIN
    QSettings(QStringLiteral("HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\Quorvale"),
              QSettings::NativeFormat)
        .clear();
#endif
}
} // namespace

int main(int argc, char **argv)
{
    // ctest lists the tests without the test environment; listing needs no display.
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    ::testing::InitGoogleTest(&argc, argv);
    if (listing)
        return RUN_ALL_TESTS();
    quorvale::useOffscreenPlatform(); // the test environment names the platform; fonts on Windows
    QTemporaryDir configHome;
    qputenv("XDG_CONFIG_HOME", configHome.path().toUtf8());
    QApplication app(argc, argv);
    clearWindowsSettings();
    const int status = RUN_ALL_TESTS();
    clearWindowsSettings();
    return status;
}
