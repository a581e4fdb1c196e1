#pragma once

#include "reports/financereporttraits.h"
#include "reports/gridfill.h"

#include <QFont>

namespace quorvale {

class FlexGrid;

// The finance reports' widening after each appended row, as a GridFill
// width rule giving exactly the widths the row-by-row rule gives.
//
// ColumnFit::CurrentRow measures the grid's current Row, not the new row.
// That row is already in the grid and unchanged by the fill, and the rule is
// idempotent once applied (a width w + 100 no longer fails w + 80), so it is
// measured again only when Row has moved (a click between chunks).
// ColumnFit::NewRow measures each new row with one margin of 90.
WidthRule financeColumnFit(ColumnFit fit, const FlexGrid &grid, const QFont &font);

} // namespace quorvale
