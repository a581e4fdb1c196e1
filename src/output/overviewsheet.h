#pragma once

#include "output/overviewcells.h"

#include <QString>

namespace quorvale {

namespace xlsx {
class Workbook;
}

// The month-end overview's sheet name.
QString overviewSheetName();

// Writes the overview's cells into a sheet of their own, placed first: the
// heading merged across the tables, the tables bordered, and its charts as
// native charts bound to those cells, printed turned and one page wide. An
// overview sheet of an earlier run is replaced whole. Throws xlsx::Error.
void writeOverviewSheet(xlsx::Workbook &book, const OverviewCells &cells, const QString &sheetName);

} // namespace quorvale
