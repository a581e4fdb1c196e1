#include "runtime/programfiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;

#ifndef Q_OS_WIN
// An installation laid out by the build's install rules: the executables'
// folder, the data folder and the run-time modules' folder under one prefix.
TEST(ProgramFiles, BesideTheExecutableFirstThenTheInstalledFolder)
{
    const QString bin = QStringLiteral(QUORVALE_TEST_INSTALL_BINDIR "/MDI.BMP");
    const QString data = QStringLiteral(QUORVALE_TEST_INSTALL_DATADIR "/MDI.BMP");
    const QString lib = QStringLiteral(QUORVALE_TEST_INSTALL_LIBDIR "/MDI.BMP");
    struct Case {
        QStringList present;
        ProgramFileKind kind;
        QString expected;
    };
    const QList<Case> cases = {
        {{bin, data}, ProgramFileKind::Data, bin}, {{data}, ProgramFileKind::Data, data},
        {{lib}, ProgramFileKind::Data, bin},       {{}, ProgramFileKind::Data, bin},
        {{lib}, ProgramFileKind::Library, lib},    {{data}, ProgramFileKind::Library, bin},
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
        EXPECT_EQ(programFile("MDI.BMP", c.kind, root.filePath(QUORVALE_TEST_INSTALL_BINDIR)),
                  root.filePath(c.expected));
    }
}
#endif
