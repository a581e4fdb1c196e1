#pragma once

#include "reports/financereporttraits.h"
#include "reports/tablefill.h"

namespace quorvale {

// The finance reports' widening after each appended row, as a fill width
// rule giving exactly the widths the row-by-row rule gives.
//
// ColumnFit::CurrentRow measures the fill's current row, not the new row.
// That row is already in the table and unchanged by the fill, and the rule
// is idempotent once applied (a width w + 100 no longer fails w + 80), so it
// is measured again only when the current row has moved. ColumnFit::NewRow
// measures each new row with one margin of 90, in the fill's text widths.
WidthRule financeColumnFit(ColumnFit fit, const TableFill &fill);

} // namespace quorvale
