#include "tools/createdbcommand.h"

#include "batch/usageerror.h"
#include "tools/commandline.h"

#include <QElapsedTimer>

namespace quorvale {

namespace {

// Large enough for any benchmark, small enough to stay within 32-bit ids.
constexpr int kMaxScale = 10000000;

} // namespace

DatabaseFileOptions parseCreateDbArguments(const QStringList &arguments, QString *path)
{
    const CommandLine line(arguments, {QStringLiteral("demo"), QStringLiteral("force")},
                           {QStringLiteral("scale")});
    DatabaseFileOptions options;
    *path = line.onlyPositional(QStringLiteral("FILE"));
    options.demo = line.isSet(QStringLiteral("demo"));
    options.force = line.isSet(QStringLiteral("force"));
    if (line.isSet(QStringLiteral("scale"))) {
        bool ok = false;
        const QString text = line.value(QStringLiteral("scale"));
        options.scale = text.toInt(&ok);
        if (!ok || options.scale < 1 || options.scale > kMaxScale)
            throw UsageError(QStringLiteral("--scale needs a whole number from 1 to %1, not '%2'")
                                 .arg(kMaxScale)
                                 .arg(text));
        // The benchmark office needs the demo's fee items and staff.
        options.demo = true;
    }
    return options;
}

AdminCommand createDbCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("create-db");
    command.synopsis = QStringLiteral("FILE [--demo] [--scale N] [--force]");
    command.summary =
        QStringLiteral("Create an embedded (SQLite) database: the empty schema or the demo data");
    command.options = {
        {QStringLiteral("FILE"),
         QStringLiteral("the database file, written under a temporary name and renamed when "
                        "complete")},
        {QStringLiteral("--demo"),
         QStringLiteral("fill it with the demo data set, dated back from today")},
        {QStringLiteral("--scale N"),
         QStringLiteral("add benchmark office BIG with N rooms and N parking spaces (implies "
                        "--demo; N up to %1)")
             .arg(kMaxScale)},
        {QStringLiteral("--force"), QStringLiteral("replace FILE if it exists")},
    };
    command.example = QStringLiteral("quorvale-admin create-db quorvale-demo.db --demo");
    command.run = [](const QStringList &arguments, QTextStream &out) {
        QString path;
        const DatabaseFileOptions options = parseCreateDbArguments(arguments, &path);
        QElapsedTimer timer;
        timer.start();
        createDatabaseFile(path, options);
        out << path << ": " << (options.demo ? "demo database" : "empty database") << " created in "
            << QString::number(double(timer.elapsed()) / 1000.0, 'f', 1) << " s\n";
    };
    return command;
}

} // namespace quorvale
