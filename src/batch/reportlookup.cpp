#include "batch/reportlookup.h"

#include "reports/customerreports.h"
#include "reports/financereport.h"

namespace quorvale {

namespace {
QList<ReportEntry> allReports()
{
    auto finance = [](const char16_t *menu, FinanceReportKind kind) {
        return ReportEntry{QString::fromUtf16(menu), financeReportDefinition(kind), kind};
    };
    return {
        ReportEntry{QStringLiteral("房产客户"), propertyCustomerDefinition(), std::nullopt},
        ReportEntry{QStringLiteral("车位客户"), parkingCustomerDefinition(), std::nullopt},
        finance(u"财务数据欠收表房产", FinanceReportKind::PropertyArrears),
        finance(u"财务数据欠收表车位", FinanceReportKind::ParkingArrears),
        finance(u"财务数据预收表车位", FinanceReportKind::ParkingAdvance),
        finance(u"财务数据预收表房产", FinanceReportKind::PropertyAdvance),
    };
}
} // namespace

std::optional<ReportEntry> findReport(const QString &name)
{
    for (const ReportEntry &entry : allReports())
        if (name == entry.menuItem || name == entry.definition.windowName)
            return entry;
    return std::nullopt;
}

QStringList reportNames()
{
    QStringList names;
    for (const ReportEntry &entry : allReports())
        names << entry.definition.windowName << entry.menuItem;
    return names;
}

QStringList menuReportNames()
{
    QStringList names;
    for (const ReportEntry &entry : allReports())
        names << entry.menuItem;
    return names;
}

} // namespace quorvale
