#include "reports/financereport.h"

#include "reports/financecolumnfit.h"
#include "reports/financereporttraits.h"
#include "reports/financerows.h"
#include "reports/financestatements.h"
#include "ui/flexgrid.h"

namespace quorvale {

void computeFinanceReport(FinanceReportKind kind, const ConnectionPtr &connection,
                          const ReportParams &params, FlexGrid &grid, GridFill &fill)
{
    const FinanceReportTraits &traits = financeTraits(kind);
    const QStringList statements = financeStatements(kind, params);
    fill.setWidthRule(financeColumnFit(traits.fit, grid, grid.font()));

    const bool newRowCurrent = traits.fit == ColumnFit::NewRow;
    if (newRowCurrent)
        grid.setRedraw(false);
    // The last row added is the current one, and drawing resumes, also when
    // a record fails: the rows read before it stay and must be seen.
    const auto finish = [&] {
        if (!newRowCurrent)
            return;
        if (fill.rowsAdded() > 0)
            grid.setRow(grid.Rows() - 1);
        grid.setRedraw(true);
    };
    try {
        // The earlier result goes only once the first statement is open; the
        // second statement's rows follow the first's.
        auto earlier = GridFill::EarlierRows::DropAfterOpen;
        for (const QString &statement : statements) {
            fill.run(connection, statement, FinanceRowBuilder(kind), earlier);
            earlier = GridFill::EarlierRows::Keep;
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
                                FlexGrid &grid, GridFill &fill) {
        computeFinanceReport(kind, connection, params, grid, fill);
    };
    definition.exportVariant = ExportWindow::Variant::Finance;
    definition.exportTitleSuffix = traits.titleSuffix;
    definition.exportTemplate = traits.sheetName;
    return definition;
}

void setFinanceHeading(FinanceReportKind kind, FlexGrid &grid)
{
    grid.setRows(1);
    grid.setFormatString(financeTraits(kind).heading);
}

FinanceCheck runFinanceReport(FinanceReportKind kind, const ConnectionPtr &connection,
                              const ReportParams &params, FlexGrid &grid,
                              const FillProgress &progress)
{
    const FinanceCheck check = checkFinanceInput(kind, params);
    if (check.proceeds())
        computeReport(financeReportDefinition(kind), connection, params, grid, progress);
    return check;
}

} // namespace quorvale
