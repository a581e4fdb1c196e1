#pragma once

// Library runtime: the program's runtime: settings store, registry, the
// classic string, number and date rules, the one error type, the top-level
// error handler and the application object. It depends on no other library
// of the program; everything else builds on it.

#include <QString>
#include <QByteArray>
#include <exception>

namespace quorvale {

// The one error type of the program: a number and a description, as
// the classic run-time errors carried them. Database errors keep the driver's
// text; the windows show the description as a message box title.
class RuntimeError : public std::exception {
public:
    RuntimeError(int number, QString description);

    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    int m_number;
    QString m_description;
    QByteArray m_utf8;
};

// Classic error numbers the system raises itself.
namespace ErrorNumber {
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int BadFileName = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccessError = 75;
// ADO's generic provider failure (0x80004005), used for database errors.
inline constexpr int DatabaseError = -2147467259;
} // namespace ErrorNumber

} // namespace quorvale
