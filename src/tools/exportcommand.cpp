#include "tools/exportcommand.h"

#include "batch/batchexport.h"
#include "batch/refusederror.h"
#include "runtime/runtimeerror.h"
#include "tools/consoletext.h"
#include "tools/exportrequestparser.h"

#include <QElapsedTimer>
#include <QLocale>
#include <cstdio>
#include <unistd.h>

namespace quorvale {

namespace {

void printError(const QString &text)
{
    std::fprintf(stderr, "quorvale-admin: export: %s\n", printableText(text).toUtf8().constData());
}

QString grouped(int n)
{
    return QLocale(QLocale::English).toString(n);
}

// Progress goes to a terminal only, overwritten in place; a scheduled task's
// log keeps the warnings, errors and the summary.
std::function<void(const PairProgress &)> terminalProgress()
{
    if (!isatty(STDERR_FILENO))
        return {};
    return [timer = QElapsedTimer()](const PairProgress &p) mutable {
        if (!timer.isValid())
            timer.start();
        QString text;
        if (p.total > 1) {
            text = QStringLiteral("[%1/%2] %3 · %4 · %5 rows")
                       .arg(p.index)
                       .arg(p.total)
                       .arg(p.report, p.office, grouped(p.rows));
        } else {
            text = QStringLiteral("rows read: %1").arg(p.rows);
            if (p.stage == QLatin1String("write"))
                text += QStringLiteral(", writing workbook");
            else if (p.stage == QLatin1String("print"))
                text += QStringLiteral(", printing");
        }
        std::fprintf(stderr, "\r%s (%.1f s)\x1b[K", printableText(text).toUtf8().constData(),
                     timer.elapsed() / 1000.0);
        std::fflush(stderr);
    };
}

QString resultText(const PairOutcome &o)
{
    switch (o.status) {
    case PairOutcome::Status::Planned: return QStringLiteral("planned");
    case PairOutcome::Status::Written: return QStringLiteral("written");
    case PairOutcome::Status::Refused: return QStringLiteral("refused: ") + o.message;
    case PairOutcome::Status::Failed: return QStringLiteral("failed: ") + o.message;
    }
    return {};
}

QString summary(const BatchRun &run, bool dryRun)
{
    QList<QStringList> rows{dryRun ? QStringList{"report", "office", "file", "sheet", "pdf", "result"}
                                   : QStringList{"report", "office", "rows", "file", "sheet", "result"}};
    for (const PairOutcome &o : run.outcomes) {
        const QString rowCount = o.rows < 0 ? QStringLiteral("-") : grouped(o.rows);
        rows << (dryRun ? QStringList{o.report, o.office, o.workbook, o.sheet, o.pdf, resultText(o)}
                        : QStringList{o.report, o.office, rowCount, o.workbook, o.sheet,
                                      resultText(o)});
    }
    return alignedTable(rows);
}

// Where the month-end overviews go (or went).
void reportOverviews(const BatchRun &run, QTextStream &out)
{
    for (const PlannedOverview &o : run.overviews) {
        out << "overview of " << printableText(o.officeCode) << ": sheet " << printableText(o.sheet)
            << " of " << printableText(o.workbook);
        if (!o.pdf.isEmpty())
            out << " and " << printableText(o.pdf);
        out << '\n';
    }
    if (!run.companyOverview.isEmpty() && run.companyOverviewError.isEmpty())
        out << "company overview: " << printableText(run.companyOverview) << '\n';
    out.flush();
    if (!run.companyOverviewError.isEmpty())
        throw RuntimeError(ErrorNumber::PathFileAccessError,
                           QStringLiteral("company overview not written: ") +
                               run.companyOverviewError);
}

// One report for one office says what it wrote in one line, as it always has.
void reportSingle(const PairOutcome &o, QTextStream &out)
{
    if (o.status == PairOutcome::Status::Refused)
        throw RefusedError(o.message);
    if (o.status == PairOutcome::Status::Failed)
        throw RuntimeError(ErrorNumber::PathFileAccessError, o.message);
    out << "wrote " << o.rows << " rows to sheet " << printableText(o.sheet) << " of "
        << printableText(o.workbook);
    if (!o.pdf.isEmpty())
        out << " and printed them to " << printableText(o.pdf);
    out << '\n';
}

// The worst result decides the status: 3 when some were refused, 4 when some failed.
void reportWorst(const BatchRun &run)
{
    int refused = 0, failed = 0;
    for (const PairOutcome &o : run.outcomes) {
        refused += o.status == PairOutcome::Status::Refused;
        failed += o.status == PairOutcome::Status::Failed;
    }
    const QString text = QStringLiteral("%1 of %2 exports refused, %3 failed (see the summary)")
                             .arg(refused)
                             .arg(run.outcomes.size())
                             .arg(failed);
    if (failed)
        throw RuntimeError(ErrorNumber::PathFileAccessError, text);
    if (refused)
        throw RefusedError(text);
}

} // namespace

AdminCommand exportCommand()
{
    AdminCommand command;
    command.name = QStringLiteral("export");
    command.synopsis = exportSynopsis();
    command.summary = QStringLiteral(
        "Export reports to workbook sheets (and print them to PDF) as their windows would; "
        "several reports and offices in one run for the month end");
    command.options = {
        {QStringLiteral("--report NAME[,NAME…]|all"),
         QStringLiteral(
             "report windows or menu items, e.g. 房产客户 or frm车位基础表; all: the six "
             "in menu order")},
        {QStringLiteral("--office CODE[,CODE…]|all"),
         QStringLiteral("management offices the window's office list offers the post; all: every "
                        "one of them except commercial offices")},
        {QStringLiteral("--user NO"), QStringLiteral("staff number to sign in with")},
        {QStringLiteral("--password PW"), QStringLiteral("the staff member's password")},
        {QStringLiteral("--password-file FILE"),
         QStringLiteral("read the password from the first line of FILE instead")},
        {QStringLiteral("--password-env NAME"),
         QStringLiteral("read the password from environment variable NAME instead")},
        {QStringLiteral("--post POSTCODE"),
         QStringLiteral("the post to act in, for a user with several posts")},
        {QStringLiteral("--month YYYYMM|this|last|last-N"),
         QStringLiteral("finance reports: the one-month mode (应收截止年月)")},
        {QStringLiteral("--months FIRST:LAST"),
         QStringLiteral("finance reports: the month-range mode; each end as --month")},
        {QStringLiteral("--cutoff DATE|today|month-end"),
         QStringLiteral("finance reports: the cut-off date (收款截止日期); month-end is the last "
                        "day of the month given")},
        {QStringLiteral("--receipts DATE:DATE|month"),
         QStringLiteral("advance-receipt reports: the receipt date range; month is the whole "
                        "month given. With --cutoff too, the arrears take the cut-off and the "
                        "advance-receipt reports the range, as their windows' range mode does")},
        {QStringLiteral("--xlsx FILE"),
         QStringLiteral("the workbook, created if missing; may hold {office}, {office_name}, "
                        "{report}, {month}, {date}")},
        {QStringLiteral("--sheet NAME"),
         QStringLiteral("the sheet (default: the report's template name); may hold placeholders")},
        {QStringLiteral("--pdf FILE"),
         QStringLiteral("also print each grid to this PDF; may hold placeholders")},
        {QStringLiteral("--paper A4|A3"), QStringLiteral("the PDF's paper (default A4)")},
        {QStringLiteral("--orientation portrait|landscape|auto"),
         QStringLiteral("the PDF's page; auto turns it for a table too wide upright")},
        {QStringLiteral("--overview"),
         QStringLiteral("write the month-end overview sheet 月末概览 (totals and charts of the "
                        "finance reports) first in each workbook; the default with --report all")},
        {QStringLiteral("--no-overview"), QStringLiteral("leave the overview out")},
        {QStringLiteral("--overview-file FILE"),
         QStringLiteral("the company overview (one row and a stacked column per office) when "
                        "several offices are run; by default 概览.xlsx beside the offices' "
                        "workbooks when each has its own; may hold {month} and {date}")},
        {QStringLiteral("--dry-run"), QStringLiteral("list what would be written; write nothing")},
    };
    command.example = QStringLiteral(
        "quorvale-admin export --report all --office all --user 1002 --password-env QUORVALE_PW "
        "--post GW05 --month last --cutoff month-end --xlsx 'out/{month}/{office}.xlsx'");
    command.application = AdminCommand::Application::Gui;
    command.run = [](const QStringList &arguments, QTextStream &out) {
        const ExportRequest request = parseExportRequest(arguments);
        const auto progress = terminalProgress();
        // Warnings wait for the end: a failure of one report prints its line only.
        QStringList warnings;
        BatchCallbacks callbacks;
        callbacks.progress = progress;
        callbacks.warning = [&warnings](const QString &text) {
            if (!warnings.contains(text))
                warnings << text;
        };
        callbacks.notice = [](const QString &text) { printError(text); };
        callbacks.planned = [&out](const BatchRun &run) {
            if (!run.period.isEmpty())
                out << "period: " << run.period << '\n';
            out.flush();
            for (const QString &note : run.skipped)
                printError(note);
        };
        BatchRun run;
        try {
            run = runBatchExport(request, callbacks);
        } catch (...) {
            if (progress)
                std::fprintf(stderr, "\n");
            throw;
        }
        if (progress)
            std::fprintf(stderr, "\r\x1b[K");
        // A single export that failed prints its one line and nothing else.
        const bool single = run.outcomes.size() == 1;
        if (!single || run.outcomes.first().status == PairOutcome::Status::Written)
            for (const QString &warning : warnings)
                printError(QStringLiteral("warning: ") + warning);
        if (request.dryRun) {
            out << summary(run, true);
            reportOverviews(run, out);
            return;
        }
        if (single) {
            reportSingle(run.outcomes.first(), out);
            reportOverviews(run, out);
            return;
        }
        out << summary(run, false);
        reportOverviews(run, out);
        reportWorst(run);
    };
    return command;
}

} // namespace quorvale
