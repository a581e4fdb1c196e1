#include <QCoreApplication>
#include "session/mdibackground.h"

#include <QImage>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 3 && args[1] == QLatin1String("make-background")) {
        return quorvale::drawMainBackground(QSize(1024, 768)).save(args[2], "BMP") ? 0 : 1;
    }
    std::fprintf(stderr, "usage: quorvale-admin COMMAND\n");
    return 2;
}
