#include "batch/batchreport.h"

#include "batch/exportdates.h"
#include "batch/refusederror.h"
#include "output/gridprint.h"
#include "output/overviewcells.h"
#include "output/overviewprint.h"
#include "reports/feecodelist.h"
#include "reports/financereport.h"
#include "reports/financereporttraits.h"
#include "reports/reportdefinition.h"
#include "runtime/stagedfile.h"
#include "runtime/twips.h"

#include <QMarginsF>
#include <QPageSize>

namespace quorvale {

ReportParams reportParams(const ReportEntry &entry, const ExportRequest &request)
{
    const FinanceReportTraits *traits = entry.finance ? &financeTraits(*entry.finance) : nullptr;
    ReportParams p = windowLoadDefaults(request.today);
    if (!traits)
        return p;
    if (request.month)
        p.month = *request.month;
    if (request.months) {
        p.monthRange = true;
        p.firstMonth = request.months->first;
        p.lastMonth = request.months->second;
    }
    if (traits->advance) {
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

void computeForBatch(const ReportEntry &entry, const ConnectionPtr &connection,
                     ReportParams &params, ReportTable &table, const TextWidthFn &textWidth,
                     const FillProgress &fillProgress)
{
    if (!entry.finance) {
        computeReport(entry.definition, connection, params, table, textWidth, fillProgress);
        return;
    }
    params.feeCodeList =
        FeeCodeList::load(financeTraits(*entry.finance).category, connection).text();
    const FinanceCheck check =
        runFinanceReport(*entry.finance, connection, params, table, textWidth, fillProgress);
    if (check.outcome == FinanceCheck::Outcome::Refuse)
        throw RefusedError(check.message);
    if (check.outcome == FinanceCheck::Outcome::SilentStop)
        throw RefusedError(QStringLiteral("the report's fee category has no current fee item; "
                                          "nothing to export"));
}

QPageLayout batchPageLayout(const QString &paper, ExportRequest::Orientation orientation,
                            double tableWidthTwips)
{
    const QPageSize size(paper == QLatin1String("A3") ? QPageSize::A3 : QPageSize::A4);
    const QMarginsF margins = Printer::defaultPageLayout().margins();
    auto layout = [&](QPageLayout::Orientation o) {
        return QPageLayout(size, o, margins, QPageLayout::Millimeter);
    };
    auto innerTwips = [](const QPageLayout &l) { return l.paintRect(QPageLayout::Inch).width() * TwipsPerInch;
    };
    switch (orientation) {
    case ExportRequest::Orientation::Landscape:
        return layout(QPageLayout::Landscape);
    case ExportRequest::Orientation::Auto: {
        const QPageLayout upright = layout(QPageLayout::Portrait);
        const QPageLayout turned = layout(QPageLayout::Landscape);
        if (tableWidthTwips > innerTwips(upright) && tableWidthTwips <= innerTwips(turned))
            return turned;
        return upright;
    }
    case ExportRequest::Orientation::Portrait:
        break;
    }
    return layout(QPageLayout::Portrait);
}

void printForBatch(StagedFile &pdf, const ReportEntry &entry, const ReportParams &params,
                   const ReportTable &table, const PrintLook &look, const QPageLayout &layout,
                   const std::function<void(const QString &)> &warning)
{
    // The print branch's titles: the windows that print their receipt
    // pickers date the heading with them, the others with today.
    const bool pickers = entry.finance && financeTraits(*entry.finance).printWithPickers;
    const QDate today = QDate::currentDate();
    const PrintTitles titles =
        reportPrintTitles(params.officeName, pickers ? params.receiptFrom : today,
                          pickers ? params.receiptTo : today, today);
    try {
        const auto printer = Printer::pdf(pdf.device(), layout);
        if (!tableFitsPaper(*printer, table, 0) && warning)
            warning(QStringLiteral("the table is wider than the paper; printed anyway, "
                                   "shifted left"));
        PrintGrid(*printer, table, look, titles, false, 0);
        printer->EndDoc();
    } catch (...) {
        pdf.checkWrites();
        throw;
    }
}

void printOverviewForBatch(StagedFile &pdf, const OfficeOverview &overview, const PrintLook &look,
                           const QPageLayout &layout)
{
    try {
        const auto printer = Printer::pdf(pdf.device(), layout);
        printOverview(*printer, officeOverviewCells(overview), look, QDate::currentDate());
    } catch (...) {
        pdf.checkWrites();
        throw;
    }
}

} // namespace quorvale
