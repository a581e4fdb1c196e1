#include "ui/msgbox.h"

#include <QApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cstring>

// Every test process gets its own settings folder, so no test can read or
// write the settings of the person running the suite.
int main(int argc, char **argv)
{
    // ctest lists the tests without the test environment; listing needs no display.
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    ::testing::InitGoogleTest(&argc, argv);
    if (listing)
        return RUN_ALL_TESTS();
    QTemporaryDir configHome;
    qputenv("XDG_CONFIG_HOME", configHome.path().toUtf8());
    QApplication app(argc, argv);
    quorvale::showUnhandledErrorsInMsgBox();
    return RUN_ALL_TESTS();
}
