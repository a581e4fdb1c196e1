#include "tools/sqlcommand.h"

#include "batch/usageerror.h"
#include "db/sqlscript.h"
#include "dbtools/configureddatabase.h"
#include "dbtools/csvprinter.h"
#include "runtime/runtimeerror.h"
#include "tools/commandline.h"
#include "tools/tableprinter.h"

#include <QFile>
#include <QStringDecoder>
#include <cstdio>

namespace quorvale {

namespace {

constexpr qint64 maxScriptBytes = qint64(256) << 20;

QString decodedScript(const QByteArray &bytes, const QString &name)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (utf8.hasError())
        throw RuntimeError(ErrorNumber::TypeMismatch,
                           QStringLiteral("%1 is not UTF-8 text").arg(name));
    if (text.startsWith(QChar(0xfeff)))
        text.remove(0, 1);
    return text;
}

QString readScript(QFile &file, const QString &name)
{
    const QByteArray bytes = file.read(maxScriptBytes + 1);
    if (file.error() != QFile::NoError)
        throw RuntimeError(ErrorNumber::PathFileAccessError,
                           QStringLiteral("cannot read %1: %2").arg(name, file.errorString()));
    if (bytes.size() > maxScriptBytes)
        throw RuntimeError(
            ErrorNumber::PathFileAccessError,
            QStringLiteral("%1 is larger than %2 MB").arg(name).arg(maxScriptBytes >> 20));
    return decodedScript(bytes, name);
}

// The script the command line names: -e TEXT, -f FILE or - for standard input.
QString scriptOf(const QStringList &positional)
{
    if (positional.size() == 2 && positional.first() == QLatin1String("-e"))
        return positional.at(1);
    if (positional.size() == 2 && positional.first() == QLatin1String("-f")) {
        QFile file(positional.at(1));
        if (!file.open(QIODevice::ReadOnly))
            throw RuntimeError(
                ErrorNumber::FileNotFound,
                QStringLiteral("cannot open %1: %2").arg(positional.at(1), file.errorString()));
        return readScript(file, positional.at(1));
    }
    if (positional == QStringList{QStringLiteral("-")}) {
        QFile in;
        if (!in.open(stdin, QIODevice::ReadOnly))
            throw RuntimeError(ErrorNumber::PathFileAccessError,
                               QStringLiteral("cannot read standard input"));
        return readScript(in, QStringLiteral("standard input"));
    }
    if (positional.isEmpty())
        throw UsageError(QStringLiteral("missing -e STATEMENT, -f FILE or -"));
    throw UsageError(
        QStringLiteral("unexpected argument %1").arg(positional.join(QLatin1Char(' '))));
}

} // namespace

AdminCommand sqlCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("sql");
    command.synopsis = QStringLiteral("[--csv] (-e STATEMENT | -f FILE | -)");
    command.summary = QStringLiteral(
        "Run T-SQL statements or a script against the configured database");
    command.options = {
        {QStringLiteral("--csv"), QStringLiteral("print query results as RFC 4180 CSV (UTF-8)")},
        {QStringLiteral("-e STATEMENT"), QStringLiteral("run this text")},
        {QStringLiteral("-f FILE"), QStringLiteral("run the script in FILE (batches split on GO)")},
        {QStringLiteral("-"), QStringLiteral("run the script read from standard input")},
    };
    command.example = QStringLiteral(
        "quorvale-admin sql -e \"SELECT GYD_DH, GYD_Name FROM 设置管理处\"");
    command.run = [](const QStringList &arguments, QTextStream &out) {
        const CommandLine line(arguments, {QStringLiteral("csv")}, {});
        const QString script = scriptOf(line.positional());
        const ConnectionPtr connection = openConfiguredDatabase();
        if (line.isSet(QStringLiteral("csv"))) {
            QTextStream notes(stderr);
            CsvPrinter printer(out, notes);
            runSqlScript(*connection, script, printer);
        } else {
            TablePrinter printer(out);
            runSqlScript(*connection, script, printer);
        }
    };
    return command;
}

} // namespace quorvale
