#include "informationrequest.h"
#include "reports/windows/reportwindows.h"
#include "runtime/tempfilecleanup.h"
#include "runtime/toplevelhandler.h"
#include "session/mdibackground.h"
#include "session/windows/frmlogin.h"
#include "ui/application.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QPointer>
#include <QScreen>

int main(int argc, char **argv)
{
    // Answered before the application object, which needs a display.
    if (const auto status = quorvale::answerInformationRequest(argc, argv))
        return *status;
    // The real boxes, clock, dialogs and printers: a test builds its own.
    const auto desktop = std::make_shared<const quorvale::Desktop>();
    quorvale::Application app(argc, argv, desktop);
    quorvale::installCleanupOnSignals();
    app.setWindowIcon(QIcon(QPixmap::fromImage(quorvale::drawEmblem(QSize(64, 64)))));
    quorvale::runGuarded(
        [&] {
            auto *login = new quorvale::FrmLogin(desktop, quorvale::reportWindowFactories());
            login->setAttribute(Qt::WA_DeleteOnClose);
            QPointer<quorvale::FrmLogin> guard = login;
            if (login->load(quorvale::sessionCommandLine(app.arguments())) && guard) {
                login->adjustSize();
                if (const QScreen *screen = QGuiApplication::primaryScreen())
                    login->move(screen->availableGeometry().center() - login->rect().center());
                login->show();
            }
        },
        desktop->unhandledErrors());
    return app.exec();
}
