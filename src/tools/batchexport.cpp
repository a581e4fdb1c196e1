#include "tools/batchexport.h"

#include "db/connection.h"
#include "db/recordset.h"
#include "output/exportoptions.h"
#include "output/gridexport.h"
#include "output/gridprint.h"
#include "output/workbooktarget.h"
#include "reports/feecodelist.h"
#include "reports/financereport.h"
#include "reports/financereporttraits.h"
#include "reports/officelist.h"
#include "reports/reportprint.h"
#include "runtime/outputset.h"
#include "runtime/runtimeerror.h"
#include "runtime/settings.h"
#include "runtime/vb.h"
#include "session/dbconnection.h"
#include "session/frmlogin.h"
#include "session/mdiform1.h"
#include "session/sessionvalues.h"
#include "session/signin.h"
#include "tools/refusederror.h"
#include "tools/reportlookup.h"
#include "tools/usageerror.h"
#include "ui/flexgrid.h"
#include "ui/msgbox.h"
#include "ui/printer.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPageLayout>

namespace quorvale {

namespace {

// The window's inputs at load are today's; the command line overrides them.
ReportParams paramsFor(const ReportEntry &entry, const ExportRequest &request)
{
    const bool customer = !entry.finance;
    if (customer && (request.month || request.months || request.cutoff || request.receipts))
        throw UsageError(QStringLiteral("--month, --months, --cutoff and --receipts apply to the "
                                        "finance reports only"));
    const FinanceReportTraits *traits = customer ? nullptr : &financeTraits(*entry.finance);
    if (traits && !traits->advance && request.receipts)
        throw UsageError(QStringLiteral("--receipts applies to the advance-receipt reports only"));

    ReportParams p = windowLoadDefaults(QDate::currentDate());
    if (request.month)
        p.month = *request.month;
    if (request.months) {
        p.monthRange = true;
        p.firstMonth = request.months->first;
        p.lastMonth = request.months->second;
    }
    if (traits && traits->advance) {
        if (request.cutoff)
            p.receiptCutOff = pickerDateArgument(QStringLiteral("cutoff"), *request.cutoff);
        if (request.receipts) {
            p.receiptRange = true;
            p.receiptFrom = pickerDateArgument(QStringLiteral("receipts"), request.receipts->first);
            p.receiptTo = pickerDateArgument(QStringLiteral("receipts"), request.receipts->second);
        }
    } else if (request.cutoff) {
        p.receiptCutOffText = *request.cutoff;
    }
    return p;
}

void connectAndSignIn(const ExportRequest &request)
{
    SignInRefusal refusal;
    if (!checkTypedCredentials(request.user, request.password, refusal))
        throw RefusedError(refusal.message);
    clearSessionForSignIn();
    if (!ConnectDatabase())
        throw RuntimeError(ErrorNumber::DatabaseError, QStringLiteral("数据库连接失败!"));

    const SignInResult result = verifyCredentials(request.user, request.password);
    switch (result.kind) {
    case SignInResult::Kind::Refused:
        throw RefusedError(result.refusal.message);
    case SignInResult::Kind::SuperUser:
        break;
    case SignInResult::Kind::Posts: {
        QStringList offered;
        for (qsizetype i = 0; i < result.posts.size(); ++i) {
            const PostChoice &post = result.posts.at(i);
            if (!request.post.isEmpty() && vbrt::Trim(post.postCode) == request.post) {
                sessionFromPostChoice(post);
                break;
            }
            offered << QStringLiteral("%1 %2").arg(vbrt::Trim(post.postCode),
                                                   result.listTexts.at(i));
        }
        if (request.post.isEmpty() && result.posts.size() == 1) {
            sessionFromPostChoice(result.posts.first());
        } else if (CurPostCode.isEmpty()) {
            const QString lead =
                request.post.isEmpty()
                    ? QStringLiteral("user %1 holds several posts; name one with --post")
                          .arg(request.user)
                    : QStringLiteral("post %1 is not a current post of user %2")
                          .arg(request.post, request.user);
            throw RefusedError(lead + QStringLiteral(": ") + offered.join(QStringLiteral("; ")));
        }
        break;
    }
    }
    LoadProjectAuditRight();
}

// The office as the window's list offers it to this post; commercial offices
// are refused here where the window's "统计" silently does nothing.
void chooseOffice(const ReportEntry &entry, const QString &code, ReportParams &params)
{
    Recordset offices;
    offices.Open(officeStatement(entry.definition.officeStyle, HasProjectAudit, CurDeptCode),
                 DbConn, 0, 1, -1);
    for (; !offices.eof(); offices.MoveNext()) {
        const OfficeItem item = officeItemOf(offices);
        if (officeCodeOf(item.text) != code)
            continue;
        if (item.commercial != 0)
            throw RefusedError(QStringLiteral("office %1 is a commercial property; the reports do "
                                              "not cover commercial offices")
                                   .arg(code));
        params.officeCode = officeCodeOf(item.text);
        params.officeName = officeNameOf(item.text);
        return;
    }
    throw RefusedError(QStringLiteral("office %1 is not in the office list of post %2")
                           .arg(code, CurPostCode.isEmpty() ? CurUserNo : CurPostCode));
}

void compute(const ReportEntry &entry, ReportParams &params, FlexGrid &grid,
             const BatchProgress &progress)
{
    const FillProgress fillProgress = [&progress](int rows) {
        if (progress)
            progress(QStringLiteral("read"), rows);
    };
    if (!entry.finance) {
        computeReport(entry.definition, DbConn, params, grid, fillProgress);
        return;
    }
    params.feeCodeList = FeeCodeList::load(financeTraits(*entry.finance).category, DbConn).text();
    const FinanceCheck check = runFinanceReport(*entry.finance, DbConn, params, grid, fillProgress);
    if (check.outcome == FinanceCheck::Outcome::Refuse)
        throw RefusedError(check.message);
    if (check.outcome == FinanceCheck::Outcome::SilentStop)
        throw RefusedError(QStringLiteral("the report's fee category has no current fee item; "
                                          "nothing to export"));
}

// The window would ask whether to change the paper; unattended, the table
// is printed anyway (shifted left) and the user told.
void printUnattended(StagedFile &pdf, const FlexGrid &grid, const PrintTitles &titles,
                     const BatchWarning &warning)
{
    setMsgBoxResponder([&warning](const MsgBoxCall &) {
        if (warning)
            warning(QStringLiteral("the table is wider than the paper; printed anyway, "
                                   "shifted left"));
        return vb::No;
    });
    try {
        const auto printer = Printer::pdf(pdf.device(), Printer::defaultPageLayout());
        PrintGrid(*printer, grid, titles, false, 0);
        printer->EndDoc();
    } catch (...) {
        setMsgBoxResponder({});
        throw;
    }
    setMsgBoxResponder({});
}

// The print branch's titles: the parking advance-receipt window dates them
// with its receipt pickers, the others with today.
PrintTitles printTitlesFor(const ReportEntry &entry, const ReportParams &params)
{
    const bool pickers = entry.finance && financeTraits(*entry.finance).printWithPickers;
    const QDate today = QDate::currentDate();
    return reportPrintTitles(params.officeName, pickers ? params.receiptFrom : today,
                             pickers ? params.receiptTo : today);
}

// The settings the program would read, with a message that says how to
// write them instead of the server error that empty settings end in.
void requireSettings()
{
    const QString app = QStringLiteral("Quorvale");
    const QString problem = SettingsStore::readProblem(app);
    if (!problem.isEmpty())
        throw RuntimeError(ErrorNumber::FileNotFound,
                           QStringLiteral("the database settings cannot be read: %1").arg(problem));
    if (SettingsStore::GetSetting(app, QStringLiteral("DBConfig"), QStringLiteral("Svr")).isEmpty())
        throw RuntimeError(ErrorNumber::FileNotFound,
                           QStringLiteral("no database settings in %1; write them with: "
                                          "quorvale-admin config --server SERVER --login LOGIN "
                                          "--password PASSWORD --database DATABASE")
                               .arg(SettingsStore::location(app)));
}

// No output may replace another output or what the run reads.
void checkOutputPaths(const ExportRequest &request, const QString &workbook)
{
    const QString app = QStringLiteral("Quorvale");
    const QString database = Connection::embeddedDatabasePath(
        SettingsStore::GetSetting(app, QStringLiteral("DBConfig"), QStringLiteral("Svr")));
    const QString settings = SettingsStore::location(app);
    struct Named {
        QString option, path;
    };
    QList<Named> outputs{{QStringLiteral("--xlsx"), workbook}};
    if (!request.pdf.isEmpty()) {
        if (isSameFile(request.pdf, workbook))
            throw UsageError(QStringLiteral("--pdf and --xlsx name the same file %1").arg(workbook));
        outputs.append({QStringLiteral("--pdf"), request.pdf});
    }
    for (const Named &output : outputs) {
        if (!database.isEmpty() && isSameFile(output.path, database))
            throw UsageError(QStringLiteral("%1 names the database file %2")
                                 .arg(output.option, database));
        if (isSameFile(output.path, settings))
            throw UsageError(QStringLiteral("%1 names the settings file %2")
                                 .arg(output.option, settings));
    }
}

} // namespace

BatchExportResult runBatchExport(const ExportRequest &request, const BatchCallbacks &callbacks)
{
    const std::optional<ReportEntry> entry = findReport(request.report);
    if (!entry)
        throw UsageError(QStringLiteral("unknown report '%1' (one of: %2)")
                             .arg(request.report, reportNames().join(QStringLiteral(", "))));
    ReportParams params = paramsFor(*entry, request);
    BatchExportResult result;
    result.workbook = exportTargetPath(request.xlsx);
    result.sheet = request.sheet.isEmpty() ? entry->definition.exportTemplate : request.sheet;
    checkOutputPaths(request, result.workbook);
    requireSettings();

    connectAndSignIn(request);
    chooseOffice(*entry, request.office, params);

    FlexGrid grid;
    prepareReportGrid(entry->definition, grid);
    compute(*entry, params, grid, callbacks.progress);
    result.rows = grid.Rows() - 1;

    // Both outputs are made completely beside their targets first and moved
    // into place together, so a failure of either changes neither.
    OutputSet outputs;
    if (!request.pdf.isEmpty()) {
        if (callbacks.progress)
            callbacks.progress(QStringLiteral("print"), result.rows);
        StagedFile &pdf = outputs.add(request.pdf);
        printUnattended(pdf, grid, printTitlesFor(*entry, params), callbacks.warning);
        result.pdf = request.pdf;
    }

    QVector<int> chosen;
    for (int c = 0; c < grid.Cols(); ++c)
        if (!grid.TextMatrix(0, c).isEmpty())
            chosen << c;
    const ExportVariant variant =
        entry->definition.exportVariant == ExportWindow::Variant::Customer
            ? ExportVariant::Customer
            : ExportVariant::Finance;
    if (callbacks.progress)
        callbacks.progress(QStringLiteral("write"), result.rows);
    WorkbookTarget workbook(result.workbook, callbacks.notice);
    workbook.writeGrid(grid, chosen, variant, result.sheet);
    workbook.stage(outputs);
    outputs.commit();
    return result;
}

} // namespace quorvale
