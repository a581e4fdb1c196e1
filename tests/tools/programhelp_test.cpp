#include "support/adminprocess.h"
#include "tools/admincommands.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

QString projectVersion()
{
    return QStringLiteral("%1.%2.%3")
        .arg(QUORVALE_VERSION_MAJOR)
        .arg(QUORVALE_VERSION_MINOR)
        .arg(QUORVALE_VERSION_PATCH);
}

// The manual page's text with troff's font changes and escaped hyphens undone.
QString manualText(const QString &name)
{
    QFile file(qEnvironmentVariable("QUORVALE_SOURCE_DIR") + "/man/" + name + ".in");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(file.readAll());
    text.remove(QRegularExpression(R"(\\f[BIRP])"));
    return text.replace(QStringLiteral("\\-"), QStringLiteral("-"));
}

} // namespace

// Asked on a machine without a display: the desktop program must answer
// before it creates anything that needs one.
TEST(ProgramHelp, BothProgramsAnswerHelpAndVersionWithoutADisplay)
{
    const struct {
        QString program;
        QString argument;
        QString expected;
    } cases[] = {
        {"quorvale", "--version", "quorvale " + projectVersion() + "\n"},
        {"quorvale", "--help", "ten comma-separated"},
        {"quorvale-admin", "--version", "quorvale-admin " + projectVersion() + "\n"},
        {"quorvale-admin", "--help", "Commands:"},
    };
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    for (const auto &c : cases) {
        SCOPED_TRACE((c.program + ' ' + c.argument).toStdString());
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(quorvale::testing::builtProgram(c.program), {c.argument});
        ASSERT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_TRUE(QString::fromUtf8(process.readAllStandardOutput()).contains(c.expected));
        EXPECT_EQ(process.readAllStandardError(), QByteArray());
    }
}

// A command's help and its manual page explain every option its usage line
// names, and show an example of the command itself.
TEST(ProgramHelp, EveryCommandIsDocumentedWithEveryOption)
{
    const auto list = quorvale::testing::runAdmin({"--help"});
    const QString manual = manualText("quorvale-admin.1");
    ASSERT_FALSE(manual.isEmpty());
    static const QRegularExpression option(QStringLiteral("--[a-z-]+"));
    for (const AdminCommand &command : adminCommands()) {
        SCOPED_TRACE(command.name.toStdString());
        EXPECT_TRUE(list.out.contains("\n  " + command.name + "  ")) << list.out.toStdString();
        EXPECT_TRUE(manual.contains(".SS " + command.name + '\n'));
        EXPECT_TRUE(command.example.startsWith("quorvale-admin " + command.name + ' '));

        const auto help = quorvale::testing::runAdmin({command.name, "--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_TRUE(help.out.contains(command.example));
        for (const auto &match : option.globalMatch(command.synopsis)) {
            const QString name = match.captured();
            EXPECT_TRUE(help.out.contains(QRegularExpression("\n  " + name + "\\b")))
                << name.toStdString();
            EXPECT_TRUE(manual.contains(name)) << name.toStdString();
        }
    }
    const QString desktopManual = manualText("quorvale.1");
    for (const char *name : {"--help", "--version", "SESSION"})
        EXPECT_TRUE(desktopManual.contains(name)) << name;
}
