#include "support/postgresserver.h"

#include "db/odbcconnectionstring.h"
#include "support/adminprocess.h"

#include <QProcess>
#include <stdexcept>

namespace quorvale::testing {

namespace {

const QString odbcDriver = QStringLiteral("PostgreSQL Unicode");

QString supportScript(const QString &name)
{
    const QString source = qEnvironmentVariable("QUORVALE_SOURCE_DIR");
    if (source.isEmpty())
        throw std::runtime_error("QUORVALE_SOURCE_DIR is not set (run the tests through ctest)");
    return source + QStringLiteral("/tests/support/") + name;
}

void run(const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!input.isEmpty()) {
        process.write(input);
    }
    process.closeWriteChannel();
    if (!process.waitForFinished(300000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error(QStringLiteral("%1 %2 failed: %3%4")
                                     .arg(program, arguments.join(QLatin1Char(' ')),
                                          process.errorString(),
                                          QString::fromUtf8(process.readAll()))
                                     .toStdString());
}

} // namespace

PostgresServer::PostgresServer()
{
    if (!installedOdbcDrivers().contains(odbcDriver))
        throw std::runtime_error("the ODBC driver \"PostgreSQL Unicode\" is not installed "
                                 "(scripts/install-deps.sh installs odbc-postgresql)");
    if (!m_dir.isValid())
        throw std::runtime_error("no temporary folder for the PostgreSQL server");
    run(QStringLiteral("bash"),
        {supportScript(QStringLiteral("pg_server.sh")), QStringLiteral("start"), m_dir.path()});
    m_started = true;
}

PostgresServer::~PostgresServer()
{
    if (m_started)
        QProcess::execute(QStringLiteral("bash"), {supportScript(QStringLiteral("pg_server.sh")),
                                                   QStringLiteral("stop"), m_dir.path()});
}

void PostgresServer::createDatabase(const QString &name, const QString &embeddedFile)
{
    QStringList arguments = {supportScript(QStringLiteral("pg_load.sh")),
                             builtProgram(QStringLiteral("quorvale-admin")), m_dir.path(), name};
    if (!embeddedFile.isEmpty())
        arguments << embeddedFile;
    run(QStringLiteral("bash"), arguments);
}

void PostgresServer::psql(const QString &database, const QString &sql)
{
    run(QStringLiteral("psql"),
        {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-v"),
         QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-h"), m_dir.path(),
         QStringLiteral("-p"), QStringLiteral("5432"), QStringLiteral("-U"),
         QStringLiteral("quorvale"), QStringLiteral("-d"), database},
        sql.toUtf8());
}

QString PostgresServer::odbc(const QString &database) const
{
    const QString server =
        QStringLiteral("DRIVER={%1};Servername=%2;Port=5432").arg(odbcDriver, m_dir.path());
    if (database.isEmpty())
        return server;
    return server + QStringLiteral(";Database=%1;UID=quorvale").arg(database);
}

} // namespace quorvale::testing
