#include "tools/exportrequest.h"

#include "runtime/vb.h"
#include "tools/commandline.h"
#include "tools/usageerror.h"

namespace quorvale {

namespace {
std::pair<QString, QString> splitPair(const QString &option, const QString &text)
{
    const qsizetype colon = text.indexOf(u':');
    if (colon <= 0 || colon == text.size() - 1 || text.indexOf(u':', colon + 1) >= 0)
        throw UsageError(QStringLiteral("--%1 takes FIRST:LAST, got '%2'").arg(option, text));
    return {text.left(colon), text.mid(colon + 1)};
}
} // namespace

ExportRequest parseExportRequest(const QStringList &arguments)
{
    const QStringList valued = {
        QStringLiteral("report"),   QStringLiteral("office"), QStringLiteral("user"),
        QStringLiteral("password"), QStringLiteral("post"),   QStringLiteral("month"),
        QStringLiteral("months"),   QStringLiteral("cutoff"), QStringLiteral("receipts"),
        QStringLiteral("xlsx"),     QStringLiteral("sheet"),  QStringLiteral("pdf")};
    const CommandLine line(arguments, {}, valued);
    if (!line.positional().isEmpty())
        throw UsageError(QStringLiteral("unexpected argument %1").arg(line.positional().first()));
    line.require({QStringLiteral("report"), QStringLiteral("office"), QStringLiteral("user"),
                  QStringLiteral("password"), QStringLiteral("xlsx")});
    if (line.isSet(QStringLiteral("month")) && line.isSet(QStringLiteral("months")))
        throw UsageError(QStringLiteral("--month and --months exclude each other"));
    if (line.isSet(QStringLiteral("cutoff")) && line.isSet(QStringLiteral("receipts")))
        throw UsageError(QStringLiteral("--cutoff and --receipts exclude each other"));

    ExportRequest r;
    r.report = line.value(QStringLiteral("report"));
    r.office = line.value(QStringLiteral("office"));
    r.user = line.value(QStringLiteral("user"));
    r.password = line.value(QStringLiteral("password"));
    r.post = line.value(QStringLiteral("post"));
    r.xlsx = line.value(QStringLiteral("xlsx"));
    r.sheet = line.value(QStringLiteral("sheet"));
    r.pdf = line.value(QStringLiteral("pdf"));
    if (r.xlsx.isEmpty())
        throw UsageError(QStringLiteral("--xlsx needs a file name"));
    if (line.isSet(QStringLiteral("sheet")) && r.sheet.isEmpty())
        throw UsageError(QStringLiteral("--sheet needs a name"));
    if (line.isSet(QStringLiteral("month")))
        r.month = line.value(QStringLiteral("month"));
    if (line.isSet(QStringLiteral("months")))
        r.months = splitPair(QStringLiteral("months"), line.value(QStringLiteral("months")));
    if (line.isSet(QStringLiteral("cutoff")))
        r.cutoff = line.value(QStringLiteral("cutoff"));
    if (line.isSet(QStringLiteral("receipts")))
        r.receipts = splitPair(QStringLiteral("receipts"), line.value(QStringLiteral("receipts")));
    return r;
}

QDate pickerDateArgument(const QString &option, const QString &text)
{
    const QDate date = vbrt::toDate(text);
    if (!date.isValid())
        throw UsageError(
            QStringLiteral("--%1: '%2' is not a date (use YYYY-MM-DD)").arg(option, text));
    return date;
}

} // namespace quorvale
