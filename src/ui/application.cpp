#include "ui/application.h"

#include "runtime/programinfo.h"
#include "runtime/toplevelhandler.h"

#include <QFont>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace quorvale {

Application::Application(int &argc, char **argv, DesktopPtr desktop)
    : QApplication(argc, argv), m_desktop(std::move(desktop))
{
    setUpApplication(*this);
}

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        reportCurrentException(m_desktop->unhandledErrors());
        return false;
    }
}

namespace {

// Qt's translations as Debian installs them, or beside the program where an
// installer puts them (translations/). The base module's catalog itself: the
// "qt" one only lists others, and fails where any of them is missing.
void useChineseForQt(QApplication &app)
{
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    QLocale::setDefault(chinese);
    auto *translator = new QTranslator(&app);
    for (const QString &folder :
         {QLibraryInfo::path(QLibraryInfo::TranslationsPath),
          QCoreApplication::applicationDirPath() + QStringLiteral("/translations")}) {
        if (translator->load(chinese, QStringLiteral("qtbase"), QStringLiteral("_"), folder)) {
            app.installTranslator(translator);
            return;
        }
    }
    delete translator;
}

} // namespace

void setUpApplication(QApplication &app)
{
    useChineseForQt(app);
    app.setApplicationName(programTitle());
    QFont font = app.font();
    // 微软雅黑 on Windows; the CJK fonts Debian ships elsewhere.
    font.setFamilies({QStringLiteral("微软雅黑"), QStringLiteral("Microsoft YaHei"),
                      QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("Noto Sans CJK SC")});
    font.setPointSize(10);
    app.setFont(font);
}

} // namespace quorvale
