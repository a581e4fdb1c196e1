#include "reports/financereport.h"

#include "reports/financecolumnfit.h"
#include "reports/financereporttraits.h"
#include "reports/financerows.h"
#include "reports/financestatements.h"

namespace quorvale {

void computeFinanceReport(FinanceReportKind kind, const ConnectionPtr &connection,
                          const ReportParams &params, TableFill &fill)
{
    const FinanceReportTraits &traits = financeTraits(kind);
    const QStringList statements = financeStatements(kind, params);
    fill.setWidthRule(financeColumnFit(traits.fit, fill));

    const bool newRowCurrent = traits.fit == ColumnFit::NewRow;
    if (newRowCurrent)
        fill.setDrawing(false);
    // The last row added is the current one, and drawing resumes, also when
    // a record fails: the rows read before it stay and must be seen.
    const auto finish = [&] {
        if (!newRowCurrent)
            return;
        if (fill.rowsAdded() > 0)
            fill.setCurrentRow(fill.table().rows() - 1);
        fill.setDrawing(true);
    };
    try {
        // The earlier result goes only once the first statement is open; the
        // second statement's rows follow the first's.
        auto earlier = TableFill::EarlierRows::DropAfterOpen;
        for (const QString &statement : statements) {
            fill.run(connection, statement, FinanceRowBuilder(kind), earlier);
            earlier = TableFill::EarlierRows::Keep;
        }
    } catch (...) {
        finish();
        throw;
    }
    finish();
}

ReportDefinition financeReportDefinition(FinanceReportKind kind)
{
    const FinanceReportTraits &traits = financeTraits(kind);
    ReportDefinition definition;
    definition.windowName = traits.windowName;
    definition.caption = traits.windowName.mid(3);
    definition.gridName = QStringLiteral("MSHFlexGrid1");
    definition.formatString = traits.heading;
    definition.headerAtLoad = traits.headingAtLoad;
    definition.officeStyle = OfficeQueryStyle::Finance;
    definition.compute = [kind](const ConnectionPtr &connection, const ReportParams &params,
                                TableFill &fill) {
        computeFinanceReport(kind, connection, params, fill);
    };
    definition.exportVariant = ExportVariant::Finance;
    definition.exportTitleSuffix = traits.titleSuffix;
    definition.exportTemplate = traits.sheetName;
    return definition;
}

FinanceCheck runFinanceReport(FinanceReportKind kind, const ConnectionPtr &connection,
                              const ReportParams &params, ReportTable &table,
                              const TextWidthFn &textWidth, const FillProgress &progress)
{
    const FinanceCheck check = checkFinanceInput(kind, params);
    if (check.proceeds())
        computeReport(financeReportDefinition(kind), connection, params, table, textWidth,
                      progress);
    return check;
}

} // namespace quorvale
