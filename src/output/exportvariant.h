#pragma once

namespace quorvale {

// The two export windows share one design; the customer reports use
// frmToExcel, the finance reports frmToExcelnew.
enum class ExportVariant { Customer, Finance };

} // namespace quorvale
