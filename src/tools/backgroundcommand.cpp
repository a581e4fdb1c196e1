#include "tools/backgroundcommand.h"

#include "runtime/runtimeerror.h"
#include "session/mdibackground.h"
#include "tools/commandline.h"

#include <QImage>

namespace quorvale {

AdminCommand makeBackgroundCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("make-background");
    command.synopsis = QStringLiteral("FILE");
    command.application = AdminCommand::Application::Gui;
    command.run = [](const QStringList &arguments, QTextStream &) {
        const QString path = CommandLine(arguments, {}, {}).onlyPositional(QStringLiteral("FILE"));
        if (!drawMainBackground(QSize(1024, 768)).save(path, "BMP"))
            throw RuntimeError(ErrorNumber::PathFileAccessError,
                               QStringLiteral("cannot write %1").arg(path));
    };
    return command;
}

} // namespace quorvale
