#include "ui/application.h"

#include "runtime/programinfo.h"
#include "runtime/toplevelhandler.h"

#include <QFont>

namespace quorvale {

Application::Application(int &argc, char **argv) : QApplication(argc, argv)
{
    setUpApplication(*this);
}

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        reportCurrentException();
        return false;
    }
}

void setUpApplication(QApplication &app)
{
    app.setApplicationName(programTitle());
    QFont font = app.font();
    // 微软雅黑 on Windows; the CJK fonts Debian ships elsewhere.
    font.setFamilies({QStringLiteral("微软雅黑"), QStringLiteral("Microsoft YaHei"),
                      QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("Noto Sans CJK SC")});
    font.setPointSize(10);
    app.setFont(font);
}

} // namespace quorvale
