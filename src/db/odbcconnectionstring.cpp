#include "db/odbcconnectionstring.h"

#include "runtime/runtimeerror.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#ifdef Q_OS_WIN
#include <windows.h>
#include <iterator>
#include <sql.h>
#include <sqlext.h>
#endif

namespace quorvale {

namespace {

[[noreturn]] void malformed()
{
    throw RuntimeError(
        ErrorNumber::DatabaseError,
        QStringLiteral("The connection string is malformed: a value holds a quote or a "
                       "semicolon that ends it early."));
}

QString normalisedKey(const QString &key)
{
    return key.simplified().toLower();
}

// ODBC values holding separators or braces go inside braces.
QString odbcValue(const QString &value)
{
    if (!value.contains(QLatin1Char(';')) && !value.contains(QLatin1Char('{')) &&
        !value.contains(QLatin1Char('}')) && value.trimmed() == value)
        return value;
    QString v = value;
    v.replace(QLatin1Char('}'), QLatin1String("}}"));
    return QLatin1Char('{') + v + QLatin1Char('}');
}

bool isFreeTds(const QString &driver)
{
    return driver.contains(QLatin1String("freetds"), Qt::CaseInsensitive) ||
           driver.contains(QLatin1String("tdsodbc"), Qt::CaseInsensitive);
}

} // namespace

AdoConnectionValues parseAdoConnectionString(const QString &s)
{
    AdoConnectionValues values;
    const int n = int(s.size());
    int i = 0;
    while (i < n) {
        while (i < n && (s.at(i).isSpace() || s.at(i) == QLatin1Char(';')))
            ++i;
        if (i >= n)
            break;
        const int eq = int(s.indexOf(QLatin1Char('='), i));
        const int semicolon = int(s.indexOf(QLatin1Char(';'), i));
        if (eq < 0 || (semicolon >= 0 && semicolon < eq))
            malformed();
        const QString key = normalisedKey(s.mid(i, eq - i));
        if (key.isEmpty())
            malformed();
        i = eq + 1;
        while (i < n && s.at(i) == QLatin1Char(' '))
            ++i;
        QString value;
        if (i < n && (s.at(i) == QLatin1Char('\'') || s.at(i) == QLatin1Char('"'))) {
            const QChar quote = s.at(i++);
            for (;;) {
                if (i >= n)
                    malformed();
                if (s.at(i) == quote) {
                    if (i + 1 < n && s.at(i + 1) == quote) {
                        value += quote;
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                value += s.at(i++);
            }
            while (i < n && s.at(i) == QLatin1Char(' '))
                ++i;
            if (i < n && s.at(i) != QLatin1Char(';'))
                malformed();
        } else {
            const int end = int(s.indexOf(QLatin1Char(';'), i));
            value = s.mid(i, end < 0 ? n - i : end - i).trimmed();
            i = end < 0 ? n : end;
        }
        if (key == QLatin1String("provider"))
            values.provider = value;
        else if (key == QLatin1String("password") || key == QLatin1String("pwd"))
            values.password = value;
        else if (key == QLatin1String("user id") || key == QLatin1String("uid") ||
                 key == QLatin1String("user"))
            values.userId = value;
        else if (key == QLatin1String("initial catalog") || key == QLatin1String("database"))
            values.initialCatalog = value;
        else if (key == QLatin1String("data source") || key == QLatin1String("server") ||
                 key == QLatin1String("address") || key == QLatin1String("addr"))
            values.dataSource = value;
    }
    return values;
}

QStringList installedOdbcDrivers()
{
    QStringList drivers;
#ifdef Q_OS_WIN
    // The driver manager's own list: only drivers of this program's bitness
    // (a 32-bit driver under WOW6432Node cannot be loaded by a 64-bit program).
    SQLHENV env = SQL_NULL_HENV;
    if (SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env) != SQL_SUCCESS)
        return drivers;
    SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLWCHAR name[256];
    SQLWCHAR attributes[2048];
    SQLSMALLINT nameLength = 0, attributesLength = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (SQL_SUCCEEDED(SQLDriversW(env, direction, name, SQLSMALLINT(std::size(name)),
                                     &nameLength, attributes, SQLSMALLINT(std::size(attributes)),
                                     &attributesLength))) {
        const QString driver = QString::fromWCharArray(reinterpret_cast<wchar_t *>(name));
        if (!drivers.contains(driver))
            drivers << driver;
        direction = SQL_FETCH_NEXT;
    }
    SQLFreeHandle(SQL_HANDLE_ENV, env);
#else
    // unixODBC looks in ODBCSYSINI (or /etc) and the user's ~/.odbcinst.ini.
    QStringList files;
    const QString sysIni = qEnvironmentVariable("ODBCSYSINI");
    const QString instIni = qEnvironmentVariable("ODBCINSTINI", QStringLiteral("odbcinst.ini"));
    if (!sysIni.isEmpty())
        files << QDir(sysIni).filePath(instIni);
    files << QStringLiteral("/etc/odbcinst.ini") << QStringLiteral("/etc/unixODBC/odbcinst.ini")
          << QStringLiteral("/usr/local/etc/odbcinst.ini")
          << QDir::home().filePath(QStringLiteral(".odbcinst.ini"));
    static const QRegularExpression section(QStringLiteral("^\\s*\\[([^\\]]+)\\]\\s*$"));
    for (const QString &path : std::as_const(files)) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            continue;
        QTextStream in(&file);
        while (!in.atEnd()) {
            const auto m = section.match(in.readLine());
            if (!m.hasMatch())
                continue;
            const QString name = m.captured(1).trimmed();
            if (name.compare(QLatin1String("ODBC"), Qt::CaseInsensitive) != 0 &&
                !drivers.contains(name))
                drivers << name;
        }
    }
#endif
    return drivers;
}

QString chooseSqlServerDriver(const QStringList &installed)
{
    auto find = [&](const QString &name) {
        for (const QString &d : installed)
            if (d.compare(name, Qt::CaseInsensitive) == 0)
                return d;
        return QString();
    };
    for (const char *name : {"ODBC Driver 18 for SQL Server", "ODBC Driver 17 for SQL Server"})
        if (const QString d = find(QString::fromLatin1(name)); !d.isEmpty())
            return d;
    static const QRegularExpression msDriver(QStringLiteral("^ODBC Driver (\\d+) for SQL Server$"),
                                             QRegularExpression::CaseInsensitiveOption);
    QString best;
    int bestVersion = -1;
    for (const QString &d : installed) {
        const auto m = msDriver.match(d);
        if (m.hasMatch() && m.captured(1).toInt() > bestVersion) {
            best = d;
            bestVersion = m.captured(1).toInt();
        }
    }
    if (!best.isEmpty())
        return best;
    if (const QString d = find(QStringLiteral("SQL Server")); !d.isEmpty())
        return d;
    for (const QString &d : installed)
        if (isFreeTds(d))
            return d;
    return {};
}

QList<std::pair<QString, QString>> odbcConnectionStringPairs(const QString &odbc)
{
    QList<std::pair<QString, QString>> pairs;
    const qsizetype n = odbc.size();
    qsizetype i = 0;
    while (i < n) {
        const qsizetype eq = odbc.indexOf(QLatin1Char('='), i);
        const qsizetype semicolon = odbc.indexOf(QLatin1Char(';'), i);
        if (eq < 0 || (semicolon >= 0 && semicolon < eq)) {
            // A part without '=' names no key.
            i = semicolon < 0 ? n : semicolon + 1;
            continue;
        }
        const QString key = odbc.mid(i, eq - i).trimmed().toLower();
        QString value;
        i = eq + 1;
        while (i < n && odbc.at(i) == QLatin1Char(' '))
            ++i;
        if (i < n && odbc.at(i) == QLatin1Char('{')) {
            for (++i; i < n; ++i) {
                if (odbc.at(i) == QLatin1Char('}')) {
                    if (i + 1 >= n || odbc.at(i + 1) != QLatin1Char('}')) {
                        ++i;
                        break;
                    }
                    ++i;
                }
                value += odbc.at(i);
            }
        }
        const qsizetype end = odbc.indexOf(QLatin1Char(';'), i);
        value += odbc.mid(i, (end < 0 ? n : end) - i).trimmed();
        if (!key.isEmpty())
            pairs.append({key, value});
        i = end < 0 ? n : end + 1;
    }
    return pairs;
}

QString completedOdbcConnectionString(const QString &odbc, const AdoConnectionValues &values)
{
    QStringList keys;
    for (const auto &[key, value] : odbcConnectionStringPairs(odbc))
        keys << key;
    QString text = odbc.trimmed();
    const auto add = [&](std::initializer_list<const char *> names, const char *key,
                         const QString &value) {
        if (value.isEmpty())
            return;
        for (const char *name : names)
            if (keys.contains(QLatin1String(name)))
                return;
        if (!text.isEmpty() && !text.endsWith(QLatin1Char(';')))
            text += QLatin1Char(';');
        text += QLatin1String(key) + QLatin1Char('=') + odbcValue(value);
    };
    add({"uid", "user", "user id", "username"}, "UID", values.userId);
    add({"pwd", "password"}, "PWD", values.password);
    add({"database", "initial catalog"}, "DATABASE", values.initialCatalog);
    return text;
}

QString streamingOdbcConnectionString(const QString &odbc)
{
    bool postgres = false;
    for (const auto &[key, value] : odbcConnectionStringPairs(odbc)) {
        if (key == QLatin1String("usedeclarefetch"))
            return odbc;
        if (key == QLatin1String("driver"))
            postgres = value.contains(QLatin1String("PostgreSQL"), Qt::CaseInsensitive) ||
                       value.contains(QLatin1String("psqlodbc"), Qt::CaseInsensitive);
    }
    if (!postgres)
        return odbc;
    QString text = odbc.trimmed();
    if (!text.endsWith(QLatin1Char(';')))
        text += QLatin1Char(';');
    return text + QLatin1String("UseDeclareFetch=1;Fetch=2000");
}

QString qodbcDatabaseName(const QString &odbc)
{
    // QODBC hands a text naming a DRIVER or SERVER key to the driver manager
    // as it is and puts "DSN=" before anything else, so a string that starts
    // with its own DSN key gives that key up here and gets it back from QODBC.
    if (odbc.contains(QLatin1String("DRIVER="), Qt::CaseInsensitive) ||
        odbc.contains(QLatin1String("SERVER="), Qt::CaseInsensitive))
        return odbc;
    static const QRegularExpression dsnKey(QStringLiteral("^\\s*DSN\\s*=\\s*"),
                                           QRegularExpression::CaseInsensitiveOption);
    QString name = odbc;
    return name.remove(dsnKey);
}

QString odbcConnectionString(const AdoConnectionValues &values, const QString &driver)
{
    QString server = values.dataSource.trimmed();
    if (server.startsWith(QLatin1String("tcp:"), Qt::CaseInsensitive))
        server = server.mid(4);
    QString host = server;
    QString port;
    QString instance;
    const int comma = int(server.indexOf(QLatin1Char(',')));
    if (comma >= 0) {
        host = server.left(comma).trimmed();
        port = server.mid(comma + 1).trimmed();
    }
    const int slash = int(host.indexOf(QLatin1Char('\\')));
    if (slash >= 0) {
        instance = host.mid(slash + 1);
        host = host.left(slash);
    }
    if (host == QLatin1String(".") ||
        host.compare(QLatin1String("(local)"), Qt::CaseInsensitive) == 0)
        host = QStringLiteral("localhost");

    QStringList parts;
    parts << QStringLiteral("DRIVER={%1}").arg(driver);
    if (isFreeTds(driver)) {
        // FreeTDS wants the port as an attribute of its own (an instance it
        // finds through the browser service itself), and must be told UTF-8.
        if (!instance.isEmpty() && port.isEmpty()) {
            parts << QStringLiteral("SERVER=") + odbcValue(host + QLatin1Char('\\') + instance);
        } else {
            parts << QStringLiteral("SERVER=") + odbcValue(host);
            parts << QStringLiteral("PORT=") + (port.isEmpty() ? QStringLiteral("1433") : port);
        }
        parts << QStringLiteral("TDS_Version=7.4") << QStringLiteral("ClientCharset=UTF-8");
    } else {
        QString target = host;
        if (!instance.isEmpty())
            target += QLatin1Char('\\') + instance;
        if (!port.isEmpty())
            target += QLatin1Char(',') + port;
        parts << QStringLiteral("SERVER=") + odbcValue(target);
    }
    parts << QStringLiteral("UID=") + odbcValue(values.userId)
          << QStringLiteral("PWD=") + odbcValue(values.password);
    if (!values.initialCatalog.isEmpty())
        parts << QStringLiteral("DATABASE=") + odbcValue(values.initialCatalog);
    // Driver 18 encrypts by default and company servers carry self-signed certificates.
    if (driver.compare(QLatin1String("ODBC Driver 18 for SQL Server"), Qt::CaseInsensitive) == 0)
        parts << QStringLiteral("TrustServerCertificate=yes");
    parts << QStringLiteral("APP=Quorvale");
    return parts.join(QLatin1Char(';'));
}

} // namespace quorvale
