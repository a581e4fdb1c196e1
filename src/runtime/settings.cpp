#include "runtime/settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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
#ifndef Q_OS_WIN
    // Created private before anything is written, so the password is never
    // readable by others, not even for a moment; rewrites keep the mode.
    const QString fileName = store->fileName();
    if (!QFileInfo::exists(fileName)) {
        QDir().mkpath(QFileInfo(fileName).absolutePath());
        QFile file(fileName);
        file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner);
    }
    QFile::setPermissions(fileName, QFile::ReadOwner | QFile::WriteOwner);
#endif
    store->beginGroup(section);
    store->setValue(key, value);
    store->sync();
}

QString SettingsStore::location(const QString &app)
{
    return QDir::toNativeSeparators(openStore(app)->fileName());
}

QString SettingsStore::readProblem(const QString &app)
{
    auto store = openStore(app);
    const QFileInfo file(store->fileName());
#ifndef Q_OS_WIN
    if (file.exists() && !file.isReadable())
        return QStringLiteral("%1 cannot be read (permission denied)")
            .arg(QDir::toNativeSeparators(file.filePath()));
#endif
    store->allKeys();
    if (store->status() == QSettings::FormatError)
        return QStringLiteral("%1 is not a valid settings file")
            .arg(QDir::toNativeSeparators(file.filePath()));
    if (store->status() == QSettings::AccessError)
        return QStringLiteral("%1 cannot be read").arg(QDir::toNativeSeparators(file.filePath()));
    return {};
}

} // namespace quorvale
