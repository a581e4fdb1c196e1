#include "runtime/settings.h"

#include "runtime/runtimeerror.h"
#include "runtime/stagedfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
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
    SaveSettings(app, section, {{key, value}});
}

void SettingsStore::SaveSettings(const QString &app, const QString &section,
                                 const QList<std::pair<QString, QString>> &values)
{
#ifdef Q_OS_WIN
    auto store = openStore(app);
    store->beginGroup(section);
    for (const auto &[key, value] : values)
        store->setValue(key, value);
    store->sync();
    if (store->status() != QSettings::NoError)
        throw RuntimeError(ErrorNumber::PermissionDenied,
                           QStringLiteral("cannot write the settings to %1").arg(location(app)));
#else
    // QSettings makes the INI text in a scratch copy; the file itself is
    // written the safe way, private from its first byte.
    const QString target = openStore(app)->fileName();
    QTemporaryDir scratch;
    const QString copy = scratch.filePath(QStringLiteral("settings.ini"));
    if (QFileInfo::exists(target) && !QFile::copy(target, copy))
        throw RuntimeError(ErrorNumber::PermissionDenied,
                           QStringLiteral("cannot read %1").arg(QDir::toNativeSeparators(target)));
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    {
        QSettings ini(copy, QSettings::IniFormat);
        ini.beginGroup(section);
        for (const auto &[key, value] : values)
            ini.setValue(key, value);
        ini.endGroup();
        ini.sync();
        if (ini.status() != QSettings::NoError)
            throw RuntimeError(ErrorNumber::PermissionDenied,
                               QStringLiteral("%1 is not a valid settings file")
                                   .arg(QDir::toNativeSeparators(target)));
    }
    QFile text(copy);
    if (!text.open(QIODevice::ReadOnly))
        throw RuntimeError(ErrorNumber::PermissionDenied, text.errorString());
    QDir().mkpath(QFileInfo(target).absolutePath());
    StagedFile file(target, QFile::ReadOwner | QFile::WriteOwner);
    file.device().write(text.readAll());
    file.finish();
    file.commit();
#endif
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

namespace {

const QString &databaseApp()
{
    static const QString app = QStringLiteral("Quorvale");
    return app;
}

const QString &databaseSection()
{
    static const QString section = QStringLiteral("DBConfig");
    return section;
}

} // namespace

DatabaseSettings DatabaseSettings::read()
{
    const auto value = [](const char *key) {
        return SettingsStore::GetSetting(databaseApp(), databaseSection(), QString::fromLatin1(key));
    };
    return {value("Svr"), value("UID"), value("PWD"), value("DBname")};
}

void DatabaseSettings::save() const
{
    SettingsStore::SaveSettings(databaseApp(), databaseSection(),
                                {{QStringLiteral("Svr"), server},
                                 {QStringLiteral("UID"), login},
                                 {QStringLiteral("PWD"), password},
                                 {QStringLiteral("DBname"), database}});
}

QString DatabaseSettings::location()
{
    return SettingsStore::location(databaseApp());
}

QString DatabaseSettings::readProblem()
{
    return SettingsStore::readProblem(databaseApp());
}

bool DatabaseSettings::allowsCommandLineSession()
{
    return SettingsStore::GetSetting(databaseApp(), databaseSection(),
                                     QStringLiteral("AllowCommandLineSession"))
               .trimmed() != QLatin1String("0");
}

} // namespace quorvale
