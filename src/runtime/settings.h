#pragma once

#include <QList>
#include <QString>
#include <utility>

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
    // The file (where there is one) is written as every output is (beside
    // it first, then renamed), readable by its owner only: it holds the
    // database password. Failures throw RuntimeError.
    static void SaveSetting(const QString &app, const QString &section, const QString &key,
                            const QString &value);
    static void SaveSettings(const QString &app, const QString &section,
                             const QList<std::pair<QString, QString>> &values);

    // Where the store is, for messages ("HKEY_CURRENT_USER\..." or the INI file).
    static QString location(const QString &app);
    // Empty when the store can be read; otherwise why not (an INI file that
    // exists but cannot be read or parsed).
    static QString readProblem(const QString &app);
};

// The four database settings the program reads at sign-in (application
// Quorvale, section DBConfig).
struct DatabaseSettings {
    QString server;   // Svr
    QString login;    // UID
    QString password; // PWD
    QString database; // DBname

    static DatabaseSettings read();
    // Writes all four (the admin tool's config command).
    void save() const;

    // Where they are kept, for messages: the INI file or the registry key.
    static QString location();
    // Why they cannot be read (a damaged or unreadable file); empty if they can.
    static QString readProblem();
    // The switch beside them: whether the program may take a session from
    // its command line (any value but "0" allows it).
    static bool allowsCommandLineSession();
};

} // namespace quorvale
