#pragma once

#include <QString>

namespace quorvale {

// The two export windows share one design; the customer reports use
// frmToExcel, the finance reports frmToExcelnew.
enum class ExportVariant { Customer, Finance };

// Where and how one grid is written into a workbook.
struct ExportOptions {
    ExportVariant variant = ExportVariant::Customer;
    QString path;  // the workbook file; created when it does not exist
    QString sheet; // the target sheet, added after the last one when missing
    QString title; // required by the window, never written into the sheet
};

// The source column whose non-empty cells are forced to text with a leading
// apostrophe: the mobile-phone column of the property customer report. The
// finance window uses its own index; both are tied to the index, not the header.
inline int textColumnOf(ExportVariant variant)
{
    return variant == ExportVariant::Customer ? 22 : 15;
}

} // namespace quorvale
