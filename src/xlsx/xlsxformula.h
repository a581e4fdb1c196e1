#pragma once

#include <QString>
#include <QStringView>

namespace quorvale::xlsx {

// A formula as another cell reads it: every relative reference moved by
// the distance between the two cells, absolute ($) parts kept, as Excel
// expands a shared formula for the cells that use it. A reference moved off
// the sheet becomes #REF!. Strings, sheet names, structured references and
// function names are left alone.
QString shiftedFormula(QStringView formula, int rows, int cols);

} // namespace quorvale::xlsx
