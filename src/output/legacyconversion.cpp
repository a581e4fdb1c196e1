#include "output/legacyconversion.h"

#include "runtime/runtimeerror.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace quorvale {

namespace {

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

[[noreturn]] void refuse(const QString &xls, const QString &reason)
{
    throw RuntimeError(ErrorNumber::ApplicationDefined,
                       QStringLiteral("“%1”是旧版 Excel 97-2003 格式（.xls）的工作簿，只能输出到 "
                                      ".xlsx 格式的工作簿：%2")
                           .arg(shown(xls), reason));
}

// LibreOffice's last words on stderr, without its start-up chatter.
QString lastLine(const QByteArray &output)
{
    const QStringList lines = QString::fromLocal8Bit(output).split(u'\n', Qt::SkipEmptyParts);
    return lines.isEmpty() ? QString() : lines.last().trimmed();
}

// LibreOffice imports any bytes as text; a compound file must at least hold
// Excel's workbook stream ("Workbook", or "Book" before Excel 97). Encrypted
// .xlsx files and other programs' documents are compound files too.
bool isUnusableCompoundFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (!bytes.startsWith(QByteArrayView("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8)))
        return false;
    // Directory entries name their streams in UTF-16LE.
    const auto entryName = [](QByteArrayView name) {
        QByteArray out;
        for (char c : name)
            out.append(c).append('\0');
        return out;
    };
    return !bytes.contains(entryName("Workbook")) && !bytes.contains(entryName("Book"));
}

} // namespace

bool LegacyConversion::applies(const QString &path)
{
    const QFileInfo info(path);
    return info.suffix().compare(QStringLiteral("xls"), Qt::CaseInsensitive) == 0 && info.isFile();
}

QString LegacyConversion::convertedName(const QString &xlsPath)
{
    const QFileInfo info(xlsPath);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral(".xlsx"));
}

QString LegacyConversion::soffice()
{
    QString found = QStandardPaths::findExecutable(QStringLiteral("soffice"));
#ifdef Q_OS_WIN
    // The installer puts it under Program Files and not on the PATH; the
    // console wrapper waits for the conversion to end.
    if (found.isEmpty()) {
        QStringList folders;
        for (const char *variable : {"ProgramFiles", "ProgramFiles(x86)"})
            if (const QString root = qEnvironmentVariable(variable); !root.isEmpty())
                folders << QDir(root).filePath(QStringLiteral("LibreOffice/program"));
        found = QStandardPaths::findExecutable(QStringLiteral("soffice.com"), folders);
        if (found.isEmpty())
            found = QStandardPaths::findExecutable(QStringLiteral("soffice"), folders);
    }
#endif
    return found;
}

LegacyConversion::LegacyConversion(const QString &xlsPath, std::chrono::milliseconds timeLimit)
    : m_xls(xlsPath)
{
    const QString target = convertedName(xlsPath);
    if (QFileInfo::exists(target))
        refuse(xlsPath, QStringLiteral("转换后的文件“%1”已经存在，不会覆盖它；请输出到“%1”，或把它"
                                       "改名后再输出")
                            .arg(shown(target)));
    if (isUnusableCompoundFile(xlsPath))
        refuse(xlsPath, QStringLiteral("它已加密（设有打开密码），或不是 Excel 工作簿"));
    const QString program = soffice();
    if (program.isEmpty())
        refuse(xlsPath, QStringLiteral("本机没有安装 LibreOffice，无法把它转换为 .xlsx；请在 Excel "
                                       "中把它另存为 .xlsx 后再输出"));
    if (!m_work.isValid())
        refuse(xlsPath, QStringLiteral("无法建立转换用的临时文件夹：%1").arg(m_work.errorString()));

    // LibreOffice leaves a lock file beside what it opens: it gets a copy.
    const QString input = m_work.filePath(QStringLiteral("in/") + QFileInfo(xlsPath).fileName());
    QDir().mkpath(QFileInfo(input).absolutePath());
    if (!QFile::copy(xlsPath, input))
        refuse(xlsPath, QStringLiteral("无法读取它"));
    const QString out = m_work.filePath(QStringLiteral("out"));
    QProcess process;
    process.setProgram(program);
    process.setArguments({QStringLiteral("--headless"), QStringLiteral("--norestore"),
                          QStringLiteral("--nologo"),
                          QStringLiteral("-env:UserInstallation=") +
                              QUrl::fromLocalFile(m_work.filePath(QStringLiteral("profile")))
                                  .toString(QUrl::FullyEncoded),
                          QStringLiteral("--convert-to"),
                          QStringLiteral("xlsx:Calc MS Excel 2007 XML"), QStringLiteral("--outdir"),
                          out, input});
    process.start();
    const int waited = int(timeLimit.count());
    if (!process.waitForStarted(waited))
        refuse(xlsPath, QStringLiteral("无法启动 LibreOffice（%1）").arg(shown(program)));
    if (!process.waitForFinished(waited)) {
        process.kill();
        process.waitForFinished(5000);
        refuse(xlsPath, QStringLiteral("LibreOffice 在 %1 秒内没有完成转换")
                            .arg(std::chrono::duration_cast<std::chrono::seconds>(timeLimit).count()));
    }
    m_converted = QDir(out).filePath(QFileInfo(target).fileName());
    if (process.exitStatus() != QProcess::NormalExit || !QFileInfo(m_converted).isFile()) {
        const QString said = lastLine(process.readAllStandardError());
        refuse(xlsPath, QStringLiteral("LibreOffice 无法把它转换为 .xlsx（%1），它可能已加密或已损坏")
                            .arg(said.isEmpty() ? QStringLiteral("退出码 %1").arg(process.exitCode())
                                                : said));
    }
}

QString LegacyConversion::note() const
{
    return QStringLiteral("已转换为 %1 并输出到其中；原文件 %2 未改动")
        .arg(QFileInfo(convertedName(m_xls)).fileName(), QFileInfo(m_xls).fileName());
}

} // namespace quorvale
