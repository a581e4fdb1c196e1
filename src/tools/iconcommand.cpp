#include "tools/iconcommand.h"

#include "batch/usageerror.h"
#include "runtime/runtimeerror.h"
#include "session/mdibackground.h"
#include "tools/commandline.h"
#include "tools/imagefile.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>

namespace quorvale {

namespace {
constexpr int kMinSize = 16;
constexpr int kMaxSize = 1024;

// A Windows icon: the emblem at the sizes Explorer and the Start menu ask
// for, each a PNG image inside the icon file.
QByteArray windowsIcon()
{
    const QList<int> sizes = {16, 24, 32, 48, 64, 256};
    QByteArray header, images;
    const auto put = [&header](auto value) {
        char bytes[sizeof value];
        qToLittleEndian(value, bytes);
        header.append(bytes, sizeof value);
    };
    const auto put16 = [&put](quint16 value) { put(value); };
    const auto put32 = [&put](quint32 value) { put(value); };
    put16(0);
    put16(1); // an icon
    put16(quint16(sizes.size()));
    const qsizetype imagesStart = 6 + 16 * sizes.size();
    for (const int size : sizes) {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        drawEmblem(QSize(size, size)).save(&buffer, "PNG");
        header.append(char(size % 256)).append(char(size % 256)); // 0 means 256
        header.append(char(0)).append(char(0));                  // no palette
        put16(1);
        put16(32);
        put32(quint32(png.size()));
        put32(quint32(imagesStart + images.size()));
        images += png;
    }
    return header + images;
}
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
        {QStringLiteral("FILE"), QStringLiteral("the PNG to write (a name ending in .ico: a "
                                                "Windows icon of the usual sizes)")},
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
        if (path.endsWith(QStringLiteral(".ico"), Qt::CaseInsensitive))
            writeFile(windowsIcon(), path);
        else
            writeImage(drawEmblem(QSize(size, size)), path, "PNG");
    };
    return command;
}

} // namespace quorvale
