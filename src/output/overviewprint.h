#pragma once

#include "output/overviewcells.h"
#include "runtime/printer.h"

#include <QDate>

namespace quorvale {

// Prints an overview: its tables as a grid, headed and footed as every
// printed page (the company, its title, its period), then a page with its
// charts drawn from the same cells: bars, axis and labels. Printer failures
// throw RuntimeError.
void printOverview(Printer &printer, const OverviewCells &cells, const PrintLook &look,
                   const QDate &printedOn);

} // namespace quorvale
