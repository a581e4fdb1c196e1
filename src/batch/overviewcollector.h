#pragma once

#include "batch/exportplan.h"
#include "output/officeoverview.h"
#include "reports/overviewbuilder.h"
#include "reports/reportparams.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

namespace quorvale {

struct ExportRequest;

// The month-end overviews of a run's offices, gathered from the finance
// reports' tables as each is computed (the tables are released one after
// the other).
class OverviewCollector {
  public:
    explicit OverviewCollector(const ExportRequest &request);
    ~OverviewCollector();

    // A finance report's table of the office, as written to its sheet.
    void add(const PlannedExport &pair, const ReportParams &params, const ReportTable &table);
    // A finance report of the office was refused or failed: its overview
    // would not add up to the sheets, so it is not written.
    void missed(const PlannedExport &pair);

    // The office's overview when every finance report of it was computed.
    std::optional<OfficeOverview> overviewOf(const QString &officeCode) const;
    // The finance report the office's overview misses, or empty.
    QString missedReport(const QString &officeCode) const;

  private:
    struct Office {
        QString code, name;
        std::unique_ptr<OverviewBuilder> builder;
        std::optional<ReportParams> arrears, advance; // as each kind of report took them
        QString missed;
    };
    Office &officeOf(const PlannedExport &pair, const ReportParams &params);
    const Office *find(const QString &officeCode) const;

    const ExportRequest &m_request;
    std::vector<Office> m_offices;
};

// The overview's heading: the company, the office, the months, the cut-off
// and receipt dates as the finance windows took them, and the date made.
QStringList overviewHeading(const QString &officeName, const std::optional<ReportParams> &arrears,
                            const std::optional<ReportParams> &advance, const QDate &today);

// The company overview's heading: an office's, titled for every office.
QStringList companyOverviewHeading(const OfficeOverview &anyOffice);

} // namespace quorvale
