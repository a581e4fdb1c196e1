#include "reports/reportdefinition.h"

namespace quorvale {

void computeReport(const ReportDefinition &definition, const ConnectionPtr &connection,
                   const ReportParams &params, FlexGrid &grid, const FillProgress &progress,
                   int chunkRows)
{
    GridFill fill(grid, progress, chunkRows);
    definition.compute(connection, params, grid, fill);
}

} // namespace quorvale
