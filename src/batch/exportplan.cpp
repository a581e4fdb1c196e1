#include "batch/exportplan.h"

#include "batch/outputpattern.h"
#include "batch/usageerror.h"
#include "output/gridexport.h"
#include "runtime/runtimeerror.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <algorithm>

namespace quorvale {

namespace {

QString pathKey(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QString pairName(const PlannedExport &p)
{
    return p.report.menuItem + QStringLiteral(" · ") + p.officeCode;
}

PlannedExport namedPair(const ExportRequest &request, const ReportEntry &report,
                        const QString &code, const QString &name)
{
    const PatternValues values{code, name, report.definition.exportTemplate, request.monthText,
                               request.today.toString(QStringLiteral("yyyyMMdd"))};
    PlannedExport p{report, code, name, {}, {}, {}, {}};
    p.workbook = exportTargetPath(expandPattern(request.xlsx, values));
    try {
        checkWorkbookName(p.workbook);
    } catch (const RuntimeError &error) {
        throw UsageError(QStringLiteral("--xlsx: ") + error.description());
    }
    p.sheet = request.sheet.isEmpty() ? report.definition.exportTemplate
                                      : expandPattern(request.sheet, values);
    if (!request.pdf.isEmpty())
        p.pdf = expandPattern(request.pdf, values);
    return p;
}

QString overviewReportName()
{
    return QStringLiteral("月末概览");
}

// One overview for each office that has a finance report, in the workbook
// of its first; a workbook of several offices names each one's sheet.
QList<PlannedOverview> planOverviews(const ExportRequest &request,
                                     const QList<PlannedExport> &pairs)
{
    QList<PlannedOverview> overviews;
    for (const PlannedExport &p : pairs) {
        const bool known = std::any_of(overviews.begin(), overviews.end(),
                                       [&](const auto &o) { return o.officeCode == p.officeCode; });
        if (!p.report.finance || !p.refusal.isEmpty() || known)
            continue;
        const PatternValues values{p.officeCode, p.officeName, overviewReportName(),
                                   request.monthText,
                                   request.today.toString(QStringLiteral("yyyyMMdd"))};
        overviews << PlannedOverview{p.officeCode, p.officeName, p.workbook, overviewReportName(),
                                     request.pdf.isEmpty() ? QString()
                                                           : expandPattern(request.pdf, values)};
    }
    for (PlannedOverview &o : overviews) {
        const bool shared = std::any_of(overviews.begin(), overviews.end(), [&](const auto &other) {
            return other.officeCode != o.officeCode &&
                   pathKey(other.workbook) == pathKey(o.workbook);
        });
        if (shared)
            o.sheet += u' ' + o.officeCode;
    }
    return overviews;
}

// The company's overview beside the offices' workbooks, when each office
// has a workbook of its own; where each has a folder, it must be named.
QString planCompanyOverview(const ExportRequest &request, const QList<PlannedOverview> &overviews,
                            QStringList &notes)
{
    QStringList books;
    for (const PlannedOverview &o : overviews)
        if (!books.contains(pathKey(o.workbook)))
            books << pathKey(o.workbook);
    if (!request.overviewFile.isEmpty())
        return exportTargetPath(expandPattern(
            request.overviewFile, {{},
                                   {},
                                   overviewReportName(),
                                   request.monthText,
                                   request.today.toString(QStringLiteral("yyyyMMdd"))}));
    if (books.size() < 2 || books.size() != overviews.size())
        return {};
    const QString folder = QFileInfo(request.xlsx).path();
    if (folder.contains(QLatin1String("{office"))) {
        notes << QStringLiteral("no company overview: each office writes into a folder of its "
                                "own (name one with --overview-file)");
        return {};
    }
    return expandPattern(folder + QStringLiteral("/概览.xlsx"),
                         {{},
                          {},
                          overviewReportName(),
                          request.monthText,
                          request.today.toString(QStringLiteral("yyyyMMdd"))});
}

void refuseClashes(const QList<PlannedExport> &pairs, const QList<PlannedOverview> &overviews,
                   const QString &companyOverview)
{
    QHash<QString, QString> sheets, files;
    QStringList clashes;
    for (const PlannedExport &p : pairs) {
        if (!p.refusal.isEmpty())
            continue;
        const QString book = pathKey(p.workbook);
        const QString sheetKey = book + u'\n' + p.sheet.toLower();
        if (sheets.contains(sheetKey))
            clashes << QStringLiteral("%1 and %2 both write sheet %3 of %4")
                           .arg(sheets.value(sheetKey), pairName(p), p.sheet, p.workbook);
        sheets.insert(sheetKey, pairName(p));
        files.insert(book, QStringLiteral("the workbook of ") + pairName(p));
    }
    for (const PlannedExport &p : pairs) {
        if (!p.refusal.isEmpty() || p.pdf.isEmpty())
            continue;
        const QString key = pathKey(p.pdf);
        if (files.contains(key))
            clashes << QStringLiteral("%1 and the PDF of %2 are both %3")
                           .arg(files.value(key), pairName(p), p.pdf);
        files.insert(key, QStringLiteral("the PDF of ") + pairName(p));
    }
    for (const PlannedOverview &o : overviews) {
        const QString sheetKey = pathKey(o.workbook) + u'\n' + o.sheet.toLower();
        if (sheets.contains(sheetKey))
            clashes << QStringLiteral("%1 and the overview of %2 both write sheet %3 of %4")
                           .arg(sheets.value(sheetKey), o.officeCode, o.sheet, o.workbook);
        if (o.pdf.isEmpty())
            continue;
        if (files.contains(pathKey(o.pdf)))
            clashes << QStringLiteral("%1 and the overview's PDF of %2 are both %3 (put {report} "
                                      "in --pdf)")
                           .arg(files.value(pathKey(o.pdf)), o.officeCode, o.pdf);
        files.insert(pathKey(o.pdf), QStringLiteral("the overview's PDF of ") + o.officeCode);
    }
    if (!companyOverview.isEmpty() && files.contains(pathKey(companyOverview)))
        clashes << QStringLiteral("%1 and the company overview are both %2")
                       .arg(files.value(pathKey(companyOverview)), companyOverview);
    if (!clashes.isEmpty())
        throw UsageError(QStringLiteral("outputs clash: ") + clashes.join(QStringLiteral("; ")));
}

} // namespace

ExportPlan planExports(const ExportRequest &request, const OfficeLister &offices)
{
    ExportPlan plan;
    QList<PlannedExport> pairs;
    for (const QString &name : request.reports) {
        const ReportEntry report = *findReport(name);
        const QList<OfficeItem> listed = offices(report);
        if (request.allOffices) {
            for (const OfficeItem &item : listed) {
                const QString code = officeCodeOf(item.text);
                if (item.commercial != 0) {
                    const QString note =
                        QStringLiteral("skipping office %1: a commercial property, which the "
                                       "reports do not cover")
                            .arg(item.text);
                    if (!plan.skipped.contains(note))
                        plan.skipped << note;
                    continue;
                }
                pairs << namedPair(request, report, code, officeNameOf(item.text));
            }
            continue;
        }
        for (const QString &code : request.offices) {
            const auto item = std::find_if(listed.begin(), listed.end(), [&](const OfficeItem &i) {
                return officeCodeOf(i.text) == code;
            });
            PlannedExport p = namedPair(request, report, code,
                                        item == listed.end() ? QString() : officeNameOf(item->text));
            if (item == listed.end())
                p.refusal = QStringLiteral("office %1 is not in the office list of this post").arg(code);
            else if (item->commercial != 0)
                p.refusal = QStringLiteral("office %1 is a commercial property; the reports do "
                                           "not cover commercial offices")
                                .arg(code);
            pairs << p;
        }
    }
    if (request.overview) {
        plan.overviews = planOverviews(request, pairs);
        plan.companyOverview = planCompanyOverview(request, plan.overviews, plan.skipped);
    }
    refuseClashes(pairs, plan.overviews, plan.companyOverview);

    // One save per workbook: its pairs run one after another, in the order
    // the workbooks first appear.
    QStringList order;
    for (const PlannedExport &p : pairs)
        if (!order.contains(pathKey(p.workbook)))
            order << pathKey(p.workbook);
    for (const QString &book : order)
        for (const PlannedExport &p : pairs)
            if (pathKey(p.workbook) == book)
                plan.pairs << p;
    return plan;
}

} // namespace quorvale
