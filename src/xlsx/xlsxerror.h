#pragma once

#include "base/error.h"

#include <QString>

namespace quorvale::xlsx {

// Error numbers as spreadsheet automation reports them, so a caller can show
// the same number the classic export showed.
namespace ErrorNumber {
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int FileNotFound = 53;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccessError = 75;
// The application-defined error, raised for everything the workbook layer
// refuses (bad sheet name, unreadable or foreign file, failed save).
inline constexpr int WorkbookError = 1004;
} // namespace ErrorNumber

// The one error the workbook layer throws: a number and a description fit
// for the user.
class Error : public NumberedError {
  public:
    using NumberedError::NumberedError;
};

} // namespace quorvale::xlsx
