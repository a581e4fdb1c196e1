#include "support/xlsxdump.h"

#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <stdexcept>

namespace quorvale::testing {

namespace {

QByteArray runTool(const QStringList &arguments)
{
#ifdef Q_OS_WIN
    // Wine starts Linux programs but passes back neither their output nor
    // their exit status: the tests that need this reader are left out there.
    Q_UNUSED(arguments);
    throw std::runtime_error("the openpyxl reader runs on Linux only");
#endif
    const QString python = QStringLiteral("/usr/bin/python3");
    if (!QFile::exists(python))
        throw std::runtime_error("/usr/bin/python3 is missing: install python3-openpyxl");
    const QString script =
        qEnvironmentVariable("QUORVALE_SOURCE_DIR") + QStringLiteral("/tests/support/xlsx_tool.py");
    QProcess process;
    process.start(python, QStringList{script} + arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error("openpyxl reader failed (is python3-openpyxl installed?): " +
                                 process.readAllStandardError().toStdString());
    return process.readAllStandardOutput();
}

} // namespace

QJsonObject dumpWorkbook(const QString &path)
{
    QJsonParseError error;
    const QJsonDocument doc =
        QJsonDocument::fromJson(runTool({QStringLiteral("dump"), path}), &error);
    if (error.error != QJsonParseError::NoError)
        throw std::runtime_error("unreadable dump: " + error.errorString().toStdString());
    return doc.object();
}

QJsonObject sheetOf(const QJsonObject &dump, const QString &sheet)
{
    return dump[QStringLiteral("data")][sheet].toObject();
}

QJsonObject cellsOf(const QJsonObject &dump, const QString &sheet)
{
    return sheetOf(dump, sheet)[QStringLiteral("cells")].toObject();
}

QString entryText(const QJsonObject &dump, const QString &part)
{
    return dump[QStringLiteral("entries")][part][QStringLiteral("text")].toString();
}

void makeWorkbookFixture(const QString &path)
{
    runTool({QStringLiteral("fixture"), path});
}

void makeWorkbookFixtureWithChartSheet(const QString &path)
{
    runTool({QStringLiteral("fixture-chartsheet"), path});
}

void makeLocalNamesFixture(const QString &path)
{
    runTool({QStringLiteral("fixture-local-names"), path});
}

void makePrefixedWorkbookFixture(const QString &path)
{
    runTool({QStringLiteral("fixture-prefixed"), path});
}

void runWorkbookTool(const QStringList &arguments)
{
    runTool(arguments);
}

} // namespace quorvale::testing
