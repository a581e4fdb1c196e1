#include "support/libreoffice.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <stdexcept>

namespace quorvale::testing {

namespace {

// RFC 4180 rows, as LibreOffice writes them.
QList<QStringList> parseCsv(const QString &text)
{
    QList<QStringList> rows;
    QStringList row;
    QString field;
    bool quoted = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            if (c == u'"' && i + 1 < text.size() && text[i + 1] == u'"')
                field += c, ++i;
            else if (c == u'"')
                quoted = false;
            else
                field += c;
        } else if (c == u'"') {
            quoted = true;
        } else if (c == u',') {
            row << field;
            field.clear();
        } else if (c == u'\n') {
            row << field;
            rows << row;
            row.clear();
            field.clear();
        } else if (c != u'\r') {
            field += c;
        }
    }
    if (!field.isEmpty() || !row.isEmpty())
        rows << (row << field);
    return rows;
}

} // namespace

QMap<QString, QList<QStringList>> libreOfficeSheets(const QStringList &workbooks)
{
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty())
        throw std::runtime_error("soffice is missing: install libreoffice-calc-nogui");
    QTemporaryDir work;
    const QString out = work.filePath(QStringLiteral("out"));
    QDir().mkpath(out);
    // Comma, quote, UTF-8, from line 1, every sheet into a file of its own.
    const QString filter = QStringLiteral(
        "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,false,false,false,-1");
    QProcess process;
    process.start(soffice, QStringList{QStringLiteral("--headless"), QStringLiteral("--norestore"),
                                       QStringLiteral("-env:UserInstallation=file://") +
                                           work.filePath(QStringLiteral("profile")),
                                       QStringLiteral("--convert-to"), filter,
                                       QStringLiteral("--outdir"), out} +
                               workbooks);
    if (!process.waitForFinished(600000) || process.exitCode() != 0)
        throw std::runtime_error("LibreOffice failed: " +
                                 process.readAllStandardError().toStdString());
    QMap<QString, QList<QStringList>> sheets;
    for (const QString &workbook : workbooks) {
        const QString base = QFileInfo(workbook).completeBaseName();
        for (const QFileInfo &csv :
             QDir(out).entryInfoList({base + QStringLiteral("-*.csv")}, QDir::Files)) {
            QFile file(csv.filePath());
            if (!file.open(QIODevice::ReadOnly))
                continue;
            const QString sheet = csv.completeBaseName().mid(base.size() + 1);
            sheets.insert(base + u'/' + sheet, parseCsv(QString::fromUtf8(file.readAll())));
        }
    }
    if (sheets.isEmpty())
        throw std::runtime_error("LibreOffice converted none of the workbooks: " +
                                 process.readAllStandardOutput().toStdString());
    return sheets;
}

QString convertWithLibreOffice(const QString &file, const QString &filter, const QString &folder)
{
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty())
        throw std::runtime_error("soffice is missing: install libreoffice-calc-nogui");
    QTemporaryDir work;
    QProcess process;
    process.start(soffice, {QStringLiteral("--headless"), QStringLiteral("--norestore"),
                            QStringLiteral("-env:UserInstallation=file://") +
                                work.filePath(QStringLiteral("profile")),
                            QStringLiteral("--convert-to"), filter, QStringLiteral("--outdir"),
                            folder, file});
    const QString converted = QDir(folder).filePath(QFileInfo(file).completeBaseName() + u'.' +
                                                    filter.section(u':', 0, 0));
    if (!process.waitForFinished(600000) || !QFileInfo::exists(converted))
        throw std::runtime_error("LibreOffice failed: " +
                                 process.readAllStandardError().toStdString());
    return converted;
}

} // namespace quorvale::testing
