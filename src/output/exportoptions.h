#pragma once

#include "output/exportvariant.h"

#include <QString>

namespace quorvale {

// Where and how one grid is written into a workbook.
struct ExportOptions {
    ExportVariant variant = ExportVariant::Customer;
    QString path;  // the workbook file; created when it does not exist
    QString sheet; // the target sheet, added after the last one when missing
    QString title; // required by the window, never written into the sheet
};

// The source column whose non-empty cells are forced to text with a leading
// apostrophe: the mobile-phone column of the property customer report, the
// invoice-number column of the advance-receipt reports. Both are tied to the
// index, not the header, in every report of the window.
inline constexpr int CustomerTextColumn = 22;
inline constexpr int FinanceTextColumn = 15;
inline int textColumnOf(ExportVariant variant)
{
    return variant == ExportVariant::Customer ? CustomerTextColumn : FinanceTextColumn;
}

} // namespace quorvale
