#include "reports/reportdefinition.h"

namespace quorvale {

QFont reportWindowFont(const QFont &base)
{
    QFont font = base;
    font.setFamily(QStringLiteral("微软雅黑"));
    return font;
}

void prepareReportTable(const ReportDefinition &definition, ReportTable &table,
                        const TextWidthFn &textWidth)
{
    if (definition.headerAtLoad)
        table.setRows(1);
    table.setFormatString(definition.formatString, textWidth);
}

void computeReport(const ReportDefinition &definition, const ConnectionPtr &connection,
                   const ReportParams &params, ReportTable &table, const TextWidthFn &textWidth,
                   const FillProgress &progress, int chunkRows)
{
    TableFill fill(table, textWidth, progress, chunkRows);
    definition.compute(connection, params, fill);
}

} // namespace quorvale
