#include "batch/overviewcollector.h"

#include "batch/batchreport.h"
#include "batch/exportrequest.h"
#include "output/gridprint.h"
#include "reports/financereporttraits.h"
#include "runtime/vb.h"

namespace quorvale {

OverviewCollector::OverviewCollector(const ExportRequest &request) : m_request(request) {}

OverviewCollector::~OverviewCollector() = default;

OverviewCollector::Office &OverviewCollector::officeOf(const PlannedExport &pair,
                                                       const ReportParams &params)
{
    for (Office &office : m_offices)
        if (office.code == pair.officeCode)
            return office;
    Office office;
    office.code = pair.officeCode;
    office.name = pair.officeName;
    // Ages count to the chosen month, or to the last month of a range.
    office.builder = std::make_unique<OverviewBuilder>(
        pair.officeCode, pair.officeName, params.monthRange ? params.lastMonth : params.month);
    m_offices.push_back(std::move(office));
    return m_offices.back();
}

void OverviewCollector::add(const PlannedExport &pair, const ReportParams &params,
                            const ReportTable &table)
{
    const FinanceReportKind kind = *pair.report.finance;
    Office &office = officeOf(pair, params);
    office.builder->add(kind, table);
    (financeTraits(kind).advance ? office.advance : office.arrears) = params;
}

void OverviewCollector::missed(const PlannedExport &pair)
{
    Office &office = officeOf(pair, reportParams(pair.report, m_request));
    if (office.missed.isEmpty())
        office.missed = pair.report.menuItem;
}

const OverviewCollector::Office *OverviewCollector::find(const QString &officeCode) const
{
    for (const Office &office : m_offices)
        if (office.code == officeCode)
            return &office;
    return nullptr;
}

std::optional<OfficeOverview> OverviewCollector::overviewOf(const QString &officeCode) const
{
    const Office *office = find(officeCode);
    if (!office || !office->missed.isEmpty() || (!office->arrears && !office->advance))
        return std::nullopt;
    return office->builder->result(
        overviewHeading(office->name, office->arrears, office->advance, m_request.today));
}

QString OverviewCollector::missedReport(const QString &officeCode) const
{
    const Office *office = find(officeCode);
    return office ? office->missed : QString();
}

QStringList overviewHeading(const QString &officeName, const std::optional<ReportParams> &arrears,
                            const std::optional<ReportParams> &advance, const QDate &today)
{
    QStringList lines{companyTitle(), QLatin1Char('(') + officeName + QStringLiteral(") 月末概览")};
    const ReportParams &months = arrears ? *arrears : *advance;
    lines << (months.monthRange
                  ? QStringLiteral("应收年月范围:%1至%2").arg(months.firstMonth, months.lastMonth)
                  : QStringLiteral("应收截止年月:%1").arg(months.month));
    if (arrears)
        lines << QStringLiteral("欠收 收款截止日期:%1").arg(arrears->receiptCutOffText);
    if (advance)
        lines << (advance->receiptRange
                      ? QStringLiteral("预收 收款日期:%1-%2")
                            .arg(vbrt::formatChineseDate(advance->receiptFrom),
                                 vbrt::formatChineseDate(advance->receiptTo))
                      : QStringLiteral("预收 收款截止日期:%1")
                            .arg(vbrt::formatChineseDate(advance->receiptCutOff)));
    lines << QStringLiteral("统计时间:") + vbrt::formatChineseDate(today);
    return lines;
}

QStringList companyOverviewHeading(const OfficeOverview &anyOffice)
{
    QStringList lines = anyOffice.headingLines;
    if (lines.size() > 1)
        lines[1] = QStringLiteral("各管理处 月末概览");
    return lines;
}

} // namespace quorvale
