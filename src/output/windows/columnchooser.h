#pragma once

#include <QFont>
#include <QVector>
#include <optional>

namespace quorvale {

class FlexGrid;
class ReportTable;

// The chooser grid of the export windows: one column per source column,
// row 0 its header text, row 1 the mark "√" when the column is exported.
namespace columnchooser {

// Rebuilds the chooser from the source table: headers (a two-row header reads
// "upper(lower)" where the rows differ), alignments, every column marked.
// With fitFont the widths are fitted to the texts in that font. Untitled
// columns end up hidden and unmarked, so they are never exported.
void configure(FlexGrid &chooser, const ReportTable &source, const std::optional<QFont> &fitFont);

void mark(FlexGrid &chooser, int col);
void unmark(FlexGrid &chooser, int col);
bool isMarked(const FlexGrid &chooser, int col);

// Source columns to export, in order; columns the chooser does not know
// (the source grew since it was configured) are not chosen.
QVector<int> chosenColumns(const FlexGrid &chooser, int sourceCols);

} // namespace columnchooser

} // namespace quorvale
