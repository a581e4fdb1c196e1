#include <QCoreApplication>
#include <QImage>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 3 && args[1] == QLatin1String("make-background")) {
        QImage img(64, 64, QImage::Format_RGB32);
        img.fill(Qt::white);
        return img.save(args[2], "BMP") ? 0 : 1;
    }
    std::fprintf(stderr, "usage: quorvale-admin COMMAND\n");
    return 2;
}
