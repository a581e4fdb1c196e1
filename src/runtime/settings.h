#pragma once

#include <QString>

namespace quorvale {

// The per-user settings store, addressed by application, section and key.
// On Windows it is HKCU\Software\VB and VBA Program Settings\<app>\<section>;
// elsewhere QSettings' per-user INI file <config>/<app>.ini, so that
// XDG_CONFIG_HOME isolates tests and the demo.
class SettingsStore {
public:
    // A missing key gives the default ("" unless given).
    static QString GetSetting(const QString &app, const QString &section, const QString &key,
                              const QString &defaultValue = QString());
    // Used only by the admin tool; the program itself never writes settings.
    static void SaveSetting(const QString &app, const QString &section, const QString &key,
                            const QString &value);
};

} // namespace quorvale
