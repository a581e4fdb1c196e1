#include "runtime/programfiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;

#ifndef Q_OS_WIN
// An installation: prefix/bin holds the executables, prefix/share/quorvale the
// data, prefix/lib/quorvale the run-time modules.
TEST(ProgramFiles, BesideTheExecutableFirstThenTheInstalledFolder)
{
    struct Case {
        QStringList present; // relative to the prefix
        ProgramFileKind kind;
        QString expected;
    };
    const QList<Case> cases = {
        {{"bin/MDI.BMP", "share/quorvale/MDI.BMP"}, ProgramFileKind::Data, "bin/MDI.BMP"},
        {{"share/quorvale/MDI.BMP"}, ProgramFileKind::Data, "share/quorvale/MDI.BMP"},
        {{"lib/quorvale/MDI.BMP"}, ProgramFileKind::Data, "bin/MDI.BMP"},
        {{}, ProgramFileKind::Data, "bin/MDI.BMP"},
        {{"lib/quorvale/MDI.BMP"}, ProgramFileKind::Library, "lib/quorvale/MDI.BMP"},
        {{"share/quorvale/MDI.BMP"}, ProgramFileKind::Library, "bin/MDI.BMP"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.present.join(' ').toStdString() + " -> " + c.expected.toStdString());
        QTemporaryDir prefix;
        const QDir root(prefix.path());
        for (const QString &file : c.present) {
            ASSERT_TRUE(root.mkpath(QFileInfo(file).path()));
            QFile f(root.filePath(file));
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        }
        EXPECT_EQ(programFile("MDI.BMP", c.kind, root.filePath("bin")), root.filePath(c.expected));
    }
}
#endif
