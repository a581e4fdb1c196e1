#include "batch/overviewcollector.h"

#include "batch/batchreport.h"
#include "batch/exportrequest.h"
#include "output/gridprint.h"
#include "output/overviewsheet.h"
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

QList<OverviewCollector::Overview> OverviewCollector::complete() const
{
    QList<Overview> out;
    for (const Office &office : m_offices) {
        if (!office.missed.isEmpty() || (!office.arrears && !office.advance))
            continue;
        const QString sheet = m_offices.size() == 1
                                  ? overviewSheetName()
                                  : overviewSheetName() + QLatin1Char(' ') + office.code;
        out << Overview{sheet, office.builder->result(overviewHeading(
                                   office.name, office.arrears, office.advance, m_request.today))};
    }
    return out;
}

QStringList OverviewCollector::incomplete() const
{
    QStringList out;
    for (const Office &office : m_offices)
        if (!office.missed.isEmpty())
            out << QStringLiteral("%1 %2: %3 was not written, so its overview would not add up")
                       .arg(office.code, office.name, office.missed);
    return out;
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

} // namespace quorvale
