#include "tools/iconcommand.h"

#include "batch/usageerror.h"
#include "runtime/runtimeerror.h"
#include "session/mdibackground.h"
#include "tools/commandline.h"
#include "tools/imagefile.h"

#include <QImage>

namespace quorvale {

namespace {
constexpr int kMinSize = 16;
constexpr int kMaxSize = 1024;
} // namespace

AdminCommand makeIconCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("make-icon");
    command.synopsis = QStringLiteral("[--size N] FILE");
    command.summary =
        QStringLiteral("Draw the program's icon, the emblem of its windows, as a PNG (the build "
                       "runs it)");
    command.options = {
        {QStringLiteral("FILE"), QStringLiteral("the PNG to write")},
        {QStringLiteral("--size N"),
         QStringLiteral("width and height in pixels, %1 to %2 (default 256)")
             .arg(kMinSize)
             .arg(kMaxSize)},
    };
    command.example = QStringLiteral("quorvale-admin make-icon --size 48 quorvale.png");
    command.application = AdminCommand::Application::Gui;
    command.run = [](const QStringList &arguments, QTextStream &) {
        const CommandLine line(arguments, {}, {QStringLiteral("size")});
        const QString path = line.onlyPositional(QStringLiteral("FILE"));
        int size = 256;
        if (line.isSet(QStringLiteral("size"))) {
            bool ok = false;
            size = line.value(QStringLiteral("size")).toInt(&ok);
            if (!ok || size < kMinSize || size > kMaxSize)
                throw UsageError(QStringLiteral("--size needs a whole number from %1 to %2, not "
                                                "'%3'")
                                     .arg(kMinSize)
                                     .arg(kMaxSize)
                                     .arg(line.value(QStringLiteral("size"))));
        }
        writeImage(drawEmblem(QSize(size, size)), path, "PNG");
    };
    return command;
}

} // namespace quorvale
