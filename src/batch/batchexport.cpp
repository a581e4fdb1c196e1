#include "batch/batchexport.h"

#include "batch/batchreport.h"
#include "batch/batchsignin.h"
#include "batch/exportplan.h"
#include "batch/outputpattern.h"
#include "batch/overviewcollector.h"
#include "batch/refusederror.h"
#include "batch/usageerror.h"
#include "db/connection.h"
#include "output/gridprint.h"
#include "output/workbooktarget.h"
#include "reports/financereporttraits.h"
#include "reports/reportdefinition.h"
#include "runtime/outputset.h"
#include "runtime/runtimeerror.h"
#include "runtime/settings.h"
#include "runtime/textwidth.h"

#include <QGuiApplication>

#include <QDir>
#include <QFileInfo>
#include <memory>

namespace quorvale {

namespace {

// Date options that no report of the run would use are a mistake in the
// command line, not something to ignore.
void checkDateOptions(const ExportRequest &request)
{
    bool finance = false, advance = false, arrears = false;
    for (const QString &name : request.reports) {
        const ReportEntry entry = *findReport(name);
        finance = finance || entry.finance.has_value();
        const bool isAdvance = entry.finance && financeTraits(*entry.finance).advance;
        advance = advance || isAdvance;
        arrears = arrears || (entry.finance && !isAdvance);
    }
    if (!finance && request.overview)
        throw UsageError(QStringLiteral("--overview needs a finance report in the run"));
    if (!finance && (request.month || request.months || request.cutoff || request.receipts))
        throw UsageError(QStringLiteral("--month, --months, --cutoff and --receipts apply to the "
                                        "finance reports only"));
    if (!advance && request.receipts)
        throw UsageError(QStringLiteral("--receipts applies to the advance-receipt reports only"));
    if (!arrears && request.cutoff && request.receipts)
        throw UsageError(QStringLiteral("with --receipts, --cutoff applies to the arrears reports "
                                        "only, and none is in the run"));
}

// The concrete months and dates, defaults included, as the run's first line.
QString periodOf(const ExportRequest &request)
{
    bool finance = false;
    for (const QString &name : request.reports)
        finance = finance || findReport(name)->finance.has_value();
    if (!finance)
        return {};
    QStringList parts;
    if (request.months)
        parts << QStringLiteral("months %1 to %2").arg(request.months->first, request.months->second);
    else
        parts << QStringLiteral("month %1").arg(request.monthText);
    const QString cutoff =
        QStringLiteral("cut-off %1")
            .arg(request.cutoff ? *request.cutoff : request.today.toString(Qt::ISODate));
    if (request.receipts) {
        // Given both, each report takes its own: the advance-receipt reports
        // run in their range mode, which leaves their cut-off picker aside.
        const QString receipts = QStringLiteral("receipts %1 to %2")
                                     .arg(request.receipts->first, request.receipts->second);
        parts << (request.cutoff ? cutoff + QStringLiteral(" (arrears)") : cutoff)
              << (request.cutoff ? receipts + QStringLiteral(" (advance receipts)") : receipts);
    } else {
        parts << cutoff;
    }
    parts << QStringLiteral("today %1").arg(request.today.toString(Qt::ISODate));
    return parts.join(QStringLiteral(", "));
}

// No output may replace another output or what the run reads.
void checkOutputPaths(const PlannedExport &pair)
{
    const QString database = Connection::embeddedDatabasePath(DatabaseSettings::read().server);
    const QString settings = DatabaseSettings::location();
    if (!pair.pdf.isEmpty() && isSameFile(pair.pdf, pair.workbook))
        throw UsageError(QStringLiteral("--pdf and --xlsx name the same file %1").arg(pair.workbook));
    const std::pair<const char *, QString> outputs[] = {{"--xlsx", pair.workbook},
                                                         {"--pdf", pair.pdf}};
    for (const auto &[option, path] : outputs) {
        if (path.isEmpty())
            continue;
        if (!database.isEmpty() && isSameFile(path, database))
            throw UsageError(QStringLiteral("%1 names the database file %2")
                                 .arg(QLatin1String(option), database));
        if (isSameFile(path, settings))
            throw UsageError(QStringLiteral("%1 names the settings file %2")
                                 .arg(QLatin1String(option), settings));
    }
}

PairOutcome outcomeOf(const PlannedExport &pair)
{
    PairOutcome o;
    o.report = pair.report.menuItem;
    o.office = (pair.officeCode + u' ' + pair.officeName).trimmed();
    o.workbook = pair.workbook;
    o.sheet = pair.sheet;
    o.pdf = pair.pdf;
    if (!pair.refusal.isEmpty()) {
        o.status = PairOutcome::Status::Refused;
        o.message = pair.refusal;
    }
    return o;
}

// The folders of a patterned name are the run's to make.
void makeFolderFor(const QString &path, const QString &pattern)
{
    if (isPattern(pattern))
        QDir().mkpath(QFileInfo(path).absolutePath());
}

// The pairs writing one workbook: computed one by one, each table released
// before the next, and saved together.
class WorkbookRun {
  public:
    WorkbookRun(const Session &session, const ExportRequest &request,
                const BatchCallbacks &callbacks, OverviewCollector &overviews,
                QList<PlannedOverview> planned)
        : m_session(session), m_request(request), m_callbacks(callbacks),
          m_font(reportWindowFont(QGuiApplication::font())),
          m_textWidth(textWidthsIn(m_font, screenDpi())), m_overviews(overviews),
          m_planned(std::move(planned))
    {
    }

    // A finance report that the overview of its office would miss.
    void missed(const PlannedExport &pair)
    {
        if (m_request.overview && pair.report.finance)
            m_overviews.missed(pair);
    }

    void run(const PlannedExport &pair, PairOutcome &outcome, PairProgress progress)
    {
        const auto report = [&](const QString &stage, int rows) {
            if (!m_callbacks.progress)
                return;
            progress.stage = stage;
            progress.rows = rows;
            m_callbacks.progress(progress);
        };
        // Several reports' warnings say which report they are about.
        const auto warning = [&](const QString &text) {
            if (m_callbacks.warning)
                m_callbacks.warning(progress.total > 1 ? QStringLiteral("%1 · %2: %3").arg(
                                                             progress.report, progress.office, text)
                                                       : text);
        };
        ReportParams params = reportParams(pair.report, m_request);
        params.officeCode = pair.officeCode;
        params.officeName = pair.officeName;
        ReportTable table;
        prepareReportTable(pair.report.definition, table, m_textWidth);
        computeForBatch(pair.report, m_session.DbConn, params, table, m_textWidth,
                        [&](int rows) { report(QStringLiteral("read"), rows); });
        outcome.rows = table.rows() - 1;
        if (m_request.overview && pair.report.finance)
            m_overviews.add(pair, params, table);

        StagedFile *pdf = nullptr;
        if (!pair.pdf.isEmpty()) {
            report(QStringLiteral("print"), outcome.rows);
            makeFolderFor(pair.pdf, m_request.pdf);
            pdf = &m_outputs.add(pair.pdf);
            try {
                double width = 0;
                for (int c = 0; c < table.cols(); ++c)
                    width += table.colWidth(c);
                printForBatch(*pdf, pair.report, params, table,
                              printLookOf(m_font, screenDpi()),
                              batchPageLayout(m_request.paper, m_request.orientation, width),
                              warning);
            } catch (...) {
                m_outputs.discard(*pdf);
                throw;
            }
        }

        report(QStringLiteral("write"), outcome.rows);
        QVector<int> chosen;
        for (int c = 0; c < table.cols(); ++c)
            if (!table.text(0, c).isEmpty())
                chosen << c;
        try {
            if (!m_target) {
                makeFolderFor(pair.workbook, m_request.xlsx);
                m_target = std::make_unique<WorkbookTarget>(pair.workbook, m_callbacks.notice);
            }
            outcome.workbook = m_target->path();
            const qsizetype earlier = m_target->warnings().size();
            m_target->writeTable(table, chosen, pair.report.definition.exportVariant, pair.sheet);
            for (const QString &text : m_target->warnings().mid(earlier))
                warning(text);
        } catch (const RuntimeError &error) {
            // What is in the workbook now cannot be trusted: none of it is saved.
            if (pdf)
                m_outputs.discard(*pdf);
            m_broken = error.description();
            throw;
        }
        m_written << &outcome;
    }

    bool isBroken() const { return !m_broken.isEmpty(); }
    const QString &brokenReason() const { return m_broken; }

    // Saves the workbook with the PDFs of its pairs; on failure every pair
    // of it is marked failed.
    void save()
    {
        if (m_written.isEmpty())
            return;
        try {
            if (isBroken())
                throw RuntimeError(ErrorNumber::PathFileAccessError, m_broken);
            writeOverviews();
            m_target->stage(m_outputs);
            m_outputs.commit();
            for (PairOutcome *o : m_written)
                o->status = PairOutcome::Status::Written;
            if (!m_target->note().isEmpty() && m_callbacks.notice)
                m_callbacks.notice(m_target->note());
        } catch (const RuntimeError &error) {
            for (PairOutcome *o : m_written) {
                o->status = PairOutcome::Status::Failed;
                o->message = QStringLiteral("not written: ") + error.description();
            }
        }
    }

  private:
    // The overviews of the workbook's offices, each with its PDF.
    void writeOverviews()
    {
        for (const PlannedOverview &planned : m_planned) {
            const std::optional<OfficeOverview> overview =
                m_overviews.overviewOf(planned.officeCode);
            if (!overview) {
                if (m_callbacks.warning)
                    m_callbacks.warning(
                        QStringLiteral("no overview for office %1: %2 was not written, so it "
                                       "would not add up")
                            .arg(planned.officeCode, m_overviews.missedReport(planned.officeCode)));
                continue;
            }
            m_target->writeOverview(*overview, planned.sheet);
            if (planned.pdf.isEmpty())
                continue;
            makeFolderFor(planned.pdf, m_request.pdf);
            StagedFile &pdf = m_outputs.add(planned.pdf);
            try {
                printOverviewForBatch(pdf, *overview, printLookOf(m_font, screenDpi()),
                                      batchPageLayout(m_request.paper, m_request.orientation, 0));
            } catch (...) {
                m_outputs.discard(pdf);
                throw;
            }
        }
    }

    const Session &m_session;
    const ExportRequest &m_request;
    const BatchCallbacks &m_callbacks;
    QFont m_font;
    TextWidthFn m_textWidth;
    OutputSet m_outputs;
    std::unique_ptr<WorkbookTarget> m_target;
    QList<PairOutcome *> m_written;
    QString m_broken;
    OverviewCollector &m_overviews;
    QList<PlannedOverview> m_planned;
};

// The company's overview from the offices' ones, in a workbook of its own.
void writeCompanyOverview(const ExportPlan &plan, const OverviewCollector &overviews,
                          const ExportRequest &request, const BatchCallbacks &callbacks,
                          BatchRun &run)
{
    QList<OfficeOverview> offices;
    for (const PlannedOverview &planned : plan.overviews)
        if (const auto overview = overviews.overviewOf(planned.officeCode))
            offices << *overview;
    if (offices.isEmpty())
        return;
    run.companyOverview = plan.companyOverview;
    try {
        makeFolderFor(plan.companyOverview,
                      request.overviewFile.isEmpty() ? request.xlsx : request.overviewFile);
        WorkbookTarget target(plan.companyOverview, callbacks.notice);
        target.writeCompanyOverview(offices, companyOverviewHeading(offices.first()));
        OutputSet outputs;
        target.stage(outputs);
        outputs.commit();
    } catch (const RuntimeError &error) {
        run.companyOverviewError = error.description();
    }
}

} // namespace

BatchRun runBatchExport(const ExportRequest &request, const BatchCallbacks &callbacks)
{
    checkDateOptions(request);
    const SessionPtr signedIn = signInForBatch(request.user, request.password, request.post);
    const Session &session = *signedIn;

    const ExportPlan plan = planExports(
        request, [&session](const ReportEntry &report) { return listedOffices(session, report); });
    BatchRun run;
    run.period = periodOf(request);
    run.skipped = plan.skipped;
    run.overviews = plan.overviews;
    for (const PlannedExport &pair : plan.pairs) {
        if (pair.refusal.isEmpty())
            checkOutputPaths(pair);
        run.outcomes << outcomeOf(pair);
    }
    if (callbacks.planned)
        callbacks.planned(run);
    if (request.dryRun)
        return run;

    OverviewCollector overviews(request);
    const auto plannedIn = [&plan](const QString &book) {
        QList<PlannedOverview> planned;
        for (const PlannedOverview &o : plan.overviews)
            if (QDir::cleanPath(QFileInfo(o.workbook).absoluteFilePath()) == book)
                planned << o;
        return planned;
    };
    std::unique_ptr<WorkbookRun> current;
    QString currentBook;
    for (qsizetype i = 0; i < plan.pairs.size(); ++i) {
        const PlannedExport &pair = plan.pairs.at(i);
        PairOutcome &outcome = run.outcomes[i];
        const QString book = QDir::cleanPath(QFileInfo(pair.workbook).absoluteFilePath());
        if (!current || book != currentBook) {
            if (current)
                current->save();
            current = std::make_unique<WorkbookRun>(session, request, callbacks, overviews,
                                                    plannedIn(book));
            currentBook = book;
        }
        if (outcome.status == PairOutcome::Status::Refused) {
            current->missed(pair);
            continue;
        }
        if (current->isBroken()) {
            outcome.status = PairOutcome::Status::Failed;
            outcome.message = QStringLiteral("not written: ") + current->brokenReason();
            continue;
        }
        PairProgress progress{int(i + 1), int(plan.pairs.size()), outcome.report, outcome.office,
                              {}, 0};
        try {
            current->run(pair, outcome, progress);
        } catch (const RefusedError &error) {
            outcome.status = PairOutcome::Status::Refused;
            outcome.message = error.text();
        } catch (const RuntimeError &error) {
            outcome.status = PairOutcome::Status::Failed;
            outcome.message = error.description();
        } catch (const UsageError &error) {
            outcome.status = PairOutcome::Status::Failed;
            outcome.message = error.text();
        }
        if (outcome.status != PairOutcome::Status::Planned)
            current->missed(pair);
    }
    if (current)
        current->save();
    if (!plan.companyOverview.isEmpty())
        writeCompanyOverview(plan, overviews, request, callbacks, run);
    return run;
}

} // namespace quorvale
