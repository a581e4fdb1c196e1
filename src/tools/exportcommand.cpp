#include "tools/exportcommand.h"

#include "session/dbconnection.h"
#include "tools/batchexport.h"
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
    command.summary = QStringLiteral(
        "Export a report to a workbook sheet (and print it to PDF) as its window would");
    command.options = {
        {QStringLiteral("--report NAME"),
         QStringLiteral("the report window or its menu item, e.g. 房产客户 or frm车位基础表")},
        {QStringLiteral("--office CODE"),
         QStringLiteral("a management office the window's office list offers the post")},
        {QStringLiteral("--user NO"), QStringLiteral("staff number to sign in with")},
        {QStringLiteral("--password PW"), QStringLiteral("the staff member's password")},
        {QStringLiteral("--post POSTCODE"),
         QStringLiteral("the post to act in, for a user with several posts")},
        {QStringLiteral("--month YYYYMM"),
         QStringLiteral("finance reports: the one-month mode (应收截止年月)")},
        {QStringLiteral("--months YYYYMM:YYYYMM"),
         QStringLiteral("finance reports: the month-range mode")},
        {QStringLiteral("--cutoff DATE"),
         QStringLiteral(
             "finance reports: the cut-off date (收款截止日期), as typed in the window")},
        {QStringLiteral("--receipts DATE:DATE"),
         QStringLiteral("advance-receipt reports: the receipt date range")},
        {QStringLiteral("--xlsx FILE"),
         QStringLiteral(
             "the workbook, created if missing; otherwise the sheet is added or written into")},
        {QStringLiteral("--sheet NAME"),
         QStringLiteral("the sheet (default: the report's template name)")},
        {QStringLiteral("--pdf FILE"), QStringLiteral("also print the grid to this PDF")},
    };
    command.example =
        QStringLiteral("quorvale-admin export --report 房产客户 --office 2 --user 1001 "
                       "--password 123456 --xlsx 客户.xlsx");
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
            result = runBatchExport(request, progress, warning);
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
        out << "wrote " << result.rows << " rows to sheet " << result.sheet << " of "
            << result.workbook;
        if (!result.pdf.isEmpty())
            out << " and printed them to " << result.pdf;
        out << '\n';
    };
    return command;
}

} // namespace quorvale
