#pragma once

#include <QByteArray>
#include <QString>

namespace quorvale {

// Root keys of the Windows registry; elsewhere there is no registry and
// every read fails.
enum class RegistryRoot { ClassesRoot, CurrentUser, LocalMachine, Users };

// Registry value types the conversion knows.
namespace RegistryType {
inline constexpr unsigned String = 1; // REG_SZ
inline constexpr unsigned Dword = 4;  // REG_DWORD, little-endian
} // namespace RegistryType

// Reads one value as text. False (and empty text) when the key cannot be
// opened or the value cannot be read.
bool GetKeyValue(RegistryRoot root, const QString &subKey, const QString &valueName,
                 QString &keyValue);

// Turns the bytes a value query returned (data = the first "returned size"
// bytes of the buffer) into text by the type: strings lose one trailing NUL;
// 32-bit numbers are read byte by byte from the last, each byte's hex code
// without zero padding, as one hexadecimal number in decimal ("10000" for
// 10 27 00 00, "21" for 05 01 00 00). Other types leave keyValue as it was.
void convertRegistryValue(unsigned type, const QByteArray &data, QString &keyValue);

} // namespace quorvale
