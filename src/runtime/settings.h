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
    // The file (where there is one) is made readable by its owner only: it
    // holds the database password.
    static void SaveSetting(const QString &app, const QString &section, const QString &key,
                            const QString &value);

    // Where the store is, for messages ("HKEY_CURRENT_USER\..." or the INI file).
    static QString location(const QString &app);
    // Empty when the store can be read; otherwise why not (an INI file that
    // exists but cannot be read or parsed).
    static QString readProblem(const QString &app);
};

} // namespace quorvale
