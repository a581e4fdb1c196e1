#include "session/dbconnection.h"

#include "runtime/settings.h"
#include "ui/msgbox.h"

namespace quorvale {

ConnectionPtr DbConn;
QString DbConnString;

QString buildConnectionString(const QString &server, const QString &database, const QString &login,
                              const QString &password)
{
    return QStringLiteral("Provider=SQLOLEDB.1;Password=") + password +
           QStringLiteral(";Persist Security Info=False;User ID=") + login +
           QStringLiteral(";Initial Catalog='") + database + QStringLiteral("';Data Source='") +
           server + QStringLiteral("'");
}

bool OpenDbConnection(const QString &server, const QString &database, const QString &login,
                      const QString &password)
{
    // The previous connection is released, not closed first.
    DbConn = std::make_shared<Connection>();
    DbConnString = buildConnectionString(server, database, login, password);
    DbConn->ConnectionString = DbConnString;
    DbConn->ConnectionTimeout = 30;
    DbConn->Open();
    return true;
}

bool ConnectDatabase()
{
    const QString app = QStringLiteral("Quorvale");
    const QString section = QStringLiteral("DBConfig");
    const QString server = SettingsStore::GetSetting(app, section, QStringLiteral("Svr"));
    const QString login = SettingsStore::GetSetting(app, section, QStringLiteral("UID"));
    const QString password = SettingsStore::GetSetting(app, section, QStringLiteral("PWD"));
    const QString database = SettingsStore::GetSetting(app, section, QStringLiteral("DBname"));
    if (!OpenDbConnection(server, database, login, password)) {
        MsgBox(QStringLiteral("数据库连接失败!"), vb::Information, QStringLiteral("连接提示"));
        return false;
    }
    return true;
}

} // namespace quorvale
