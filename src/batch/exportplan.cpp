#include "batch/exportplan.h"

#include "batch/outputpattern.h"
#include "batch/usageerror.h"
#include "output/gridexport.h"
#include "runtime/runtimeerror.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

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

void refuseClashes(const QList<PlannedExport> &pairs)
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
    refuseClashes(pairs);

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
