#include "tools/exportcommand.h"

#include "session/dbconnection.h"
#include "tools/batchexport.h"
#include "tools/consoletext.h"
#include "tools/exportrequest.h"

#include <QElapsedTimer>
#include <cstdio>
#include <unistd.h>

namespace quorvale {

namespace {
// Progress goes to a terminal only, overwritten in place; a scheduled task's
// log keeps just the result line.
BatchProgress terminalProgress()
{
    if (!isatty(STDERR_FILENO))
        return {};
    return [timer = QElapsedTimer()](const QString &stage, int rows) mutable {
        if (!timer.isValid())
            timer.start();
        const QString text = stage == QLatin1String("read")
                                 ? QStringLiteral("rows read: %1").arg(rows)
                             : stage == QLatin1String("write")
                                 ? QStringLiteral("rows read: %1, writing workbook").arg(rows)
                                 : QStringLiteral("rows read: %1, printing").arg(rows);
        std::fprintf(stderr, "\r%s (%.1f s)\x1b[K", text.toLocal8Bit().constData(),
                     timer.elapsed() / 1000.0);
        std::fflush(stderr);
    };
}
} // namespace

AdminCommand exportCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("export");
    command.synopsis = QStringLiteral(
        "--report NAME --office CODE --user NO --password PW [--post POSTCODE] "
        "[--month YYYYMM | --months YYYYMM:YYYYMM] [--cutoff DATE | --receipts DATE:DATE] "
        "--xlsx FILE [--sheet NAME] [--pdf FILE]");
    command.application = AdminCommand::Application::Widgets;
    command.run = [](const QStringList &arguments, QTextStream &out) {
        const ExportRequest request = parseExportRequest(arguments);
        const BatchProgress progress = terminalProgress();
        // Warnings wait for success: a failure prints its one line only.
        QStringList warnings;
        const auto warning = [&warnings](const QString &text) {
            if (!warnings.contains(text))
                warnings << text;
        };
        BatchExportResult result;
        try {
            const auto notice = [](const QString &text) {
                std::fprintf(stderr, "quorvale-admin: export: %s\n",
                             printableText(text).toLocal8Bit().constData());
            };
            result = runBatchExport(request, {progress, warning, notice});
        } catch (...) {
            if (progress)
                std::fprintf(stderr, "\n");
            DbConn.reset();
            throw;
        }
        // The connection goes before the application object it was made under.
        DbConn.reset();
        if (progress)
            std::fprintf(stderr, "\n");
        out << "wrote " << result.rows << " rows to sheet " << printableText(result.sheet) << " of "
            << printableText(result.workbook);
        if (!result.pdf.isEmpty())
            out << " and printed them to " << printableText(result.pdf);
        out << '\n';
    };
    return command;
}

} // namespace quorvale
