#include "runtime/settings.h"

#include <QSettings>
#include <memory>

namespace quorvale {

namespace {

// The classic per-user program settings branch on Windows; an INI file named
// after the application elsewhere, so XDG_CONFIG_HOME redirects it.
std::unique_ptr<QSettings> openStore(const QString &app)
{
#ifdef Q_OS_WIN
    return std::make_unique<QSettings>(
        QStringLiteral("HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\") + app,
        QSettings::NativeFormat);
#else
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, app);
#endif
}

} // namespace

QString SettingsStore::GetSetting(const QString &app, const QString &section, const QString &key,
                                  const QString &defaultValue)
{
    auto store = openStore(app);
    store->beginGroup(section);
    const QVariant value = store->value(key);
    if (!value.isValid())
        return defaultValue.isNull() ? QString(QLatin1String("")) : defaultValue;
    // A hand-written INI value with a comma (a "host,port" server) reads back as a list.
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QLatin1Char(','));
    return value.toString();
}

void SettingsStore::SaveSetting(const QString &app, const QString &section, const QString &key,
                                const QString &value)
{
    auto store = openStore(app);
    store->beginGroup(section);
    store->setValue(key, value);
    store->sync();
}

} // namespace quorvale
