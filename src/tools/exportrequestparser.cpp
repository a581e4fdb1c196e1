#include "tools/exportrequestparser.h"

#include "batch/exportdates.h"
#include "batch/reportlookup.h"
#include "batch/usageerror.h"
#include "runtime/vb.h"
#include "tools/commandline.h"

#include <QFile>

namespace quorvale {

namespace {

std::pair<QString, QString> splitPair(const QString &option, const QString &text)
{
    const qsizetype colon = text.indexOf(u':');
    if (colon <= 0 || colon == text.size() - 1 || text.indexOf(u':', colon + 1) >= 0)
        throw UsageError(QStringLiteral("--%1 takes FIRST:LAST, got '%2'").arg(option, text));
    return {text.left(colon), text.mid(colon + 1)};
}

QStringList listArgument(const QString &option, const QString &text)
{
    QStringList items;
    for (const QString &item : text.split(u','))
        if (!item.trimmed().isEmpty())
            items << item.trimmed();
    if (items.isEmpty())
        throw UsageError(QStringLiteral("--%1 needs a value").arg(option));
    return items;
}

// The password from exactly one place: a scheduler's command line is seen in
// every process list, a file or the environment is not.
QString passwordOf(const CommandLine &line)
{
    const bool inline_ = line.isSet(QStringLiteral("password"));
    const bool file = line.isSet(QStringLiteral("password-file"));
    const bool env = line.isSet(QStringLiteral("password-env"));
    if (int(inline_) + int(file) + int(env) != 1)
        throw UsageError(QStringLiteral(
            "give the password once: --password, --password-file or --password-env"));
    if (inline_)
        return line.value(QStringLiteral("password"));
    if (file) {
        QFile f(line.value(QStringLiteral("password-file")));
        if (!f.open(QIODevice::ReadOnly))
            throw UsageError(QStringLiteral("--password-file: cannot read %1 (%2)")
                                 .arg(f.fileName(), f.errorString()));
        QByteArray text = f.readLine(4096);
        while (text.endsWith('\n') || text.endsWith('\r'))
            text.chop(1);
        return QString::fromUtf8(text);
    }
    const QString name = line.value(QStringLiteral("password-env"));
    if (!qEnvironmentVariableIsSet(name.toLocal8Bit().constData()))
        throw UsageError(QStringLiteral("--password-env: %1 is not set").arg(name));
    return qEnvironmentVariable(name.toLocal8Bit().constData());
}

} // namespace

QString exportSynopsis()
{
    return QStringLiteral(
        "--report NAME[,NAME…]|all --office CODE[,CODE…]|all --user NO "
        "(--password PW | --password-file FILE | --password-env NAME) [--post POSTCODE] "
        "[--month YYYYMM|this|last|last-N | --months FIRST:LAST] "
        "[--cutoff DATE|today|month-end] [--receipts DATE:DATE|month] "
        "--xlsx FILE [--sheet NAME] [--pdf FILE] [--paper A4|A3] "
        "[--orientation portrait|landscape|auto] [--overview | --no-overview] "
        "[--overview-file FILE] [--dry-run]");
}

ExportRequest parseExportRequest(const QStringList &arguments, const QDate &today)
{
    const QStringList valued = {QStringLiteral("report"),        QStringLiteral("office"),
                                QStringLiteral("user"),          QStringLiteral("password"),
                                QStringLiteral("password-file"), QStringLiteral("password-env"),
                                QStringLiteral("post"),          QStringLiteral("month"),
                                QStringLiteral("months"),        QStringLiteral("cutoff"),
                                QStringLiteral("receipts"),      QStringLiteral("xlsx"),
                                QStringLiteral("sheet"),         QStringLiteral("pdf"),
                                QStringLiteral("paper"),         QStringLiteral("orientation"),
                                QStringLiteral("overview-file")};
    const CommandLine line(
        arguments,
        {QStringLiteral("dry-run"), QStringLiteral("overview"), QStringLiteral("no-overview")},
        valued);
    if (!line.positional().isEmpty())
        throw UsageError(QStringLiteral("unexpected argument %1").arg(line.positional().first()));
    line.require({QStringLiteral("report"), QStringLiteral("office"), QStringLiteral("user"),
                  QStringLiteral("xlsx")});
    if (line.isSet(QStringLiteral("month")) && line.isSet(QStringLiteral("months")))
        throw UsageError(QStringLiteral("--month and --months exclude each other"));

    ExportRequest r;
    r.today = today;
    r.reports = listArgument(QStringLiteral("report"), line.value(QStringLiteral("report")));
    const bool allReports = r.reports == QStringList{QStringLiteral("all")};
    if (allReports)
        r.reports = menuReportNames();
    for (const QString &name : r.reports)
        if (!findReport(name))
            throw UsageError(QStringLiteral("unknown report '%1' (one of: all, %2)")
                                 .arg(name, reportNames().join(QStringLiteral(", "))));
    r.offices = listArgument(QStringLiteral("office"), line.value(QStringLiteral("office")));
    r.allOffices = r.offices == QStringList{QStringLiteral("all")};
    if (r.allOffices)
        r.offices.clear();
    r.user = line.value(QStringLiteral("user"));
    r.password = passwordOf(line);
    r.post = line.value(QStringLiteral("post"));
    r.xlsx = line.value(QStringLiteral("xlsx"));
    r.sheet = line.value(QStringLiteral("sheet"));
    r.pdf = line.value(QStringLiteral("pdf"));
    r.dryRun = line.isSet(QStringLiteral("dry-run"));
    if (line.isSet(QStringLiteral("overview")) && line.isSet(QStringLiteral("no-overview")))
        throw UsageError(QStringLiteral("--overview and --no-overview exclude each other"));
    // The month end's run of every report gets its overview unless told not to.
    r.overview = line.isSet(QStringLiteral("overview")) ||
                 (allReports && !line.isSet(QStringLiteral("no-overview")));
    r.overviewFile = line.value(QStringLiteral("overview-file"));
    if (line.isSet(QStringLiteral("overview-file")) && (r.overviewFile.isEmpty() || !r.overview))
        throw UsageError(QStringLiteral("--overview-file names the company overview's workbook "
                                        "of a run with the overview"));
    if (r.xlsx.isEmpty())
        throw UsageError(QStringLiteral("--xlsx needs a file name"));
    if (line.isSet(QStringLiteral("sheet")) && r.sheet.isEmpty())
        throw UsageError(QStringLiteral("--sheet needs a name"));
    if (line.isSet(QStringLiteral("pdf")) && r.pdf.isEmpty())
        throw UsageError(QStringLiteral("--pdf needs a file name"));

    if (line.isSet(QStringLiteral("paper"))) {
        r.paper = line.value(QStringLiteral("paper")).toUpper();
        if (r.paper != QLatin1String("A4") && r.paper != QLatin1String("A3"))
            throw UsageError(QStringLiteral("--paper takes A4 or A3"));
    }
    if (line.isSet(QStringLiteral("orientation"))) {
        const QString o = line.value(QStringLiteral("orientation"));
        if (o == QLatin1String("portrait"))
            r.orientation = ExportRequest::Orientation::Portrait;
        else if (o == QLatin1String("landscape"))
            r.orientation = ExportRequest::Orientation::Landscape;
        else if (o == QLatin1String("auto"))
            r.orientation = ExportRequest::Orientation::Auto;
        else
            throw UsageError(QStringLiteral("--orientation takes portrait, landscape or auto"));
    }
    if ((line.isSet(QStringLiteral("paper")) || line.isSet(QStringLiteral("orientation"))) &&
        r.pdf.isEmpty())
        throw UsageError(QStringLiteral("--paper and --orientation apply to --pdf"));

    // The month the date words refer to: the one month, or the range's last.
    QString periodMonth = vbrt::formatYearMonth(today);
    if (line.isSet(QStringLiteral("month"))) {
        r.month = resolveMonth(QStringLiteral("month"), line.value(QStringLiteral("month")), today);
        periodMonth = r.monthText = *r.month;
    }
    if (line.isSet(QStringLiteral("months"))) {
        const auto [first, last] =
            splitPair(QStringLiteral("months"), line.value(QStringLiteral("months")));
        r.months = {resolveMonth(QStringLiteral("months"), first, today),
                    resolveMonth(QStringLiteral("months"), last, today)};
        periodMonth = r.months->second;
        r.monthText = r.months->first + u'-' + r.months->second;
    }
    if (r.monthText.isEmpty())
        r.monthText = periodMonth;
    if (line.isSet(QStringLiteral("cutoff")))
        r.cutoff = resolveCutoff(line.value(QStringLiteral("cutoff")), today, periodMonth);
    if (line.isSet(QStringLiteral("receipts")))
        r.receipts = resolveReceipts(line.value(QStringLiteral("receipts")), periodMonth);
    return r;
}

} // namespace quorvale
