// Output files under faults the user cannot see coming: a disk that fills up,
// a rename that fails half-way through a set, another writer holding the lock.
#include "runtime/outputset.h"
#include "runtime/printer.h"
#include "runtime/runtimeerror.h"
#include "runtime/writerlock.h"
#include "support/files.h"
#include "ui/printerpreview.h"

#include <QDir>
#include <QPrinter>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

using namespace quorvale;
using namespace quorvale::testing;

namespace {

#ifndef Q_OS_WIN
// Runs the code with writes past `bytes` failing, as on a full disk.
void withFileSizeLimit(rlim_t bytes, const std::function<void()> &code)
{
    rlimit saved{};
    getrlimit(RLIMIT_FSIZE, &saved);
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    const auto restore = qScopeGuard([&] {
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, previous);
    });
    rlimit limited = saved;
    limited.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limited);
    code();
}
#endif

QString failureOf(const std::function<void()> &code)
{
    try {
        code();
    } catch (const RuntimeError &e) {
        return e.description();
    }
    return {};
}

} // namespace

TEST(OutputFaults, AFullDiskLeavesTheEarlierFileAndNoTemporary)
{
#ifdef Q_OS_WIN
    GTEST_SKIP() << "Windows has no file size limit to make a disk full for one process";
#else
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("out.bin"));
    writeBytes(target, "earlier");
    const auto printPdf = [&] {
        QPrinter settings(QPrinter::HighResolution);
        settings.setOutputFileName(target);
        printToPdfFile(settings, [](Printer &p) {
            for (int i = 0; i < 400; ++i) {
                p.Print(QStringLiteral("第 %1 行 内容").arg(i));
                if (i % 100 == 99)
                    p.NewPage();
            }
        });
    };
    const struct {
        const char *name;
        rlim_t limit;
        std::function<void()> write;
    } cases[] = {
        {"staged file", 4096,
         [&] {
             OutputSet outputs;
             outputs.add(target).device().write(QByteArray(64 * 1024, 'x'));
             outputs.commit();
         }},
        {"PDF printed to a file", 4096, printPdf},
        {"PDF printed to a file, disk full from the first byte", 0, printPdf},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QString message;
        withFileSizeLimit(c.limit, [&] { message = failureOf(c.write); });
        EXPECT_TRUE(message.contains(QStringLiteral("File too large"))) << message.toStdString();
        EXPECT_TRUE(message.contains(target)) << message.toStdString();
        EXPECT_EQ(bytesOf(target), QByteArray("earlier"));
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
                  QStringList{QStringLiteral("out.bin")});
    }
#endif
}

TEST(OutputFaults, ASetWhoseLastRenameFailsPutsTheEarlierTargetsBack)
{
    QTemporaryDir dir;
    const QString first = dir.filePath(QStringLiteral("a.xlsx"));
    const QString second = dir.filePath(QStringLiteral("b.pdf"));
    writeBytes(first, "old a");
    EXPECT_FALSE(failureOf([&] {
                     OutputSet outputs;
                     outputs.add(first).device().write("new a");
                     outputs.add(second).device().write("new b");
                     // Something takes the second name before the move: a folder with content.
                     QDir(dir.path()).mkpath(QStringLiteral("b.pdf/x"));
                     outputs.commit();
                 }).isEmpty());
    EXPECT_EQ(bytesOf(first), QByteArray("old a"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("a.xlsx")});
}

TEST(OutputFaults, ASecondWriterWaitsForTheLockAndGivesUpWithAMessage)
{
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("book.xlsx"));
    auto held = std::make_unique<WriterLock>(target, std::chrono::milliseconds(0));
    QStringList said;
    const QString message = failureOf([&] {
        WriterLock second(target, std::chrono::milliseconds(300),
                          [&](const QString &text) { said << text; });
    });
    EXPECT_EQ(said.size(), 1);
    EXPECT_TRUE(message.contains(QDir::toNativeSeparators(target))) << message.toStdString();
    held.reset();
    EXPECT_TRUE(
        failureOf([&] { WriterLock third(target, std::chrono::milliseconds(0)); }).isEmpty());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}
