#pragma once

// Library runtime: the program's runtime: settings store, registry, the
// classic string, number and date rules, the one error type, the top-level
// error handler and the application object. It depends on no other library
// of the program; everything else builds on it.

#include "base/error.h"

#include <QString>

namespace quorvale {

// The one error type of the program: a number and a description, as
// the classic run-time errors carried them. Database errors keep the driver's
// text; the windows show the description as a message box title.
class RuntimeError : public NumberedError {
  public:
    using NumberedError::NumberedError;
};

// Classic error numbers the system raises itself, and those of the controls
// and data objects it imitates.
namespace ErrorNumber {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int BadFileName = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccessError = 75;
inline constexpr int ObjectNotSet = 91;
inline constexpr int InvalidPropertyValue = 380;
inline constexpr int InvalidPropertyArrayIndex = 381; // the grid's "Subscript out of range"
inline constexpr int PrinterError = 482;
inline constexpr int ApplicationDefined = 1004; // Excel's "application-defined or object-defined error"
inline constexpr int ObjectClosed = 3704;       // "Operation is not allowed when the object is closed."
inline constexpr int ObjectOpen = 3705;         // "... when the object is open."
inline constexpr int ItemNotFound = 3265;               // a recordset field by an unknown name
inline constexpr int InvalidRowValue = 30009;
inline constexpr int InvalidColValue = 30010;
// ADO's generic provider failure (0x80004005), used for database errors.
inline constexpr int DatabaseError = -2147467259;
} // namespace ErrorNumber

} // namespace quorvale
