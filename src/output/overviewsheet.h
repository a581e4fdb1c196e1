#pragma once

#include "output/officeoverview.h"

#include <QString>

namespace quorvale {

namespace xlsx {
class Workbook;
}

// The month-end overview's sheet name.
QString overviewSheetName();

// Writes the overview into its own sheet, placed first: the heading, the
// arrears by fee item (properties and parking spaces, subtotals, total), by
// age and the ten largest, the advance receipts by fee item; and two native
// charts bound to those cells (outstanding by fee item, by age). An
// overview sheet of an earlier run is replaced whole. Throws xlsx::Error.
void writeOverviewSheet(xlsx::Workbook &book, const OfficeOverview &overview,
                        const QString &sheetName);

} // namespace quorvale
