#include "runtime/registry.h"

#include "runtime/runtimeerror.h"

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace quorvale {

namespace {
// The classic conversion of an "&h" literal: up to four digits is a 16-bit
// integer, up to eight a 32-bit one, so the top bit makes it negative.
QString hexLiteralAsDecimal(const QString &digits)
{
    bool ok = false;
    const qulonglong value = digits.toULongLong(&ok, 16);
    if (!ok || digits.size() > 8)
        throw RuntimeError(ErrorNumber::TypeMismatch, QStringLiteral("类型不匹配"));
    if (digits.size() <= 4)
        return QString::number(static_cast<qint16>(static_cast<quint16>(value)));
    return QString::number(static_cast<qint32>(static_cast<quint32>(value)));
}
} // namespace

void convertRegistryValue(unsigned type, const QByteArray &data, QString &keyValue)
{
    if (data.isEmpty())
        throw RuntimeError(ErrorNumber::InvalidProcedureCall, QStringLiteral("无效的过程调用或参数"));
    const QByteArray raw = data.at(data.size() - 1) == '\0' ? data.left(data.size() - 1) : data;
    if (type == RegistryType::String) {
        keyValue = QString::fromLocal8Bit(raw);
    } else if (type == RegistryType::Dword) {
        QString digits;
        for (qsizetype i = raw.size() - 1; i >= 0; --i)
            digits += QString::number(static_cast<unsigned char>(raw.at(i)), 16).toUpper();
        keyValue = hexLiteralAsDecimal(digits);
    }
}

#ifdef Q_OS_WIN
namespace {
HKEY rootHandle(RegistryRoot root)
{
    switch (root) {
    case RegistryRoot::ClassesRoot:
        return HKEY_CLASSES_ROOT;
    case RegistryRoot::CurrentUser:
        return HKEY_CURRENT_USER;
    case RegistryRoot::LocalMachine:
        return HKEY_LOCAL_MACHINE;
    case RegistryRoot::Users:
        return HKEY_USERS;
    }
    return HKEY_LOCAL_MACHINE;
}
} // namespace

bool GetKeyValue(RegistryRoot root, const QString &subKey, const QString &valueName,
                 QString &keyValue)
{
    HKEY key = nullptr;
    const QByteArray subKeyText = subKey.toLocal8Bit();
    if (RegOpenKeyExA(rootHandle(root), subKeyText.constData(), 0, 0x2003F, &key) !=
        ERROR_SUCCESS) {
        keyValue.clear();
        return false;
    }
    QByteArray buffer(1024, '\0');
    DWORD size = static_cast<DWORD>(buffer.size());
    DWORD type = 0;
    const QByteArray name = valueName.toLocal8Bit();
    if (RegQueryValueExA(key, name.constData(), nullptr, &type,
                         reinterpret_cast<LPBYTE>(buffer.data()), &size) != ERROR_SUCCESS) {
        keyValue.clear();
        RegCloseKey(key);
        return false;
    }
    try {
        convertRegistryValue(type, buffer.left(static_cast<qsizetype>(size)), keyValue);
    } catch (...) {
        RegCloseKey(key);
        throw;
    }
    RegCloseKey(key);
    return true;
}
#else
bool GetKeyValue(RegistryRoot, const QString &, const QString &, QString &keyValue)
{
    keyValue.clear();
    return false;
}
#endif

} // namespace quorvale
