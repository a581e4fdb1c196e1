#include "tools/backgroundcommand.h"

#include "runtime/runtimeerror.h"
#include "session/mdibackground.h"
#include "tools/commandline.h"
#include "tools/imagefile.h"

#include <QImage>

namespace quorvale {

AdminCommand makeBackgroundCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("make-background");
    command.synopsis = QStringLiteral("FILE");
    command.summary =
        QStringLiteral("Draw the main window's background picture MDI.BMP (the build runs it)");
    command.options = {{QStringLiteral("FILE"), QStringLiteral("the bitmap to write")}};
    command.example = QStringLiteral("quorvale-admin make-background MDI.BMP");
    command.application = AdminCommand::Application::Gui;
    command.run = [](const QStringList &arguments, QTextStream &) {
        const QString path = CommandLine(arguments, {}, {}).onlyPositional(QStringLiteral("FILE"));
        writeImage(drawMainBackground(QSize(1024, 768)), path, "BMP");
    };
    return command;
}

} // namespace quorvale
