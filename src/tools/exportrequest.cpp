#include "tools/exportrequest.h"

#include "runtime/vb.h"
#include "tools/commandline.h"
#include "tools/usageerror.h"

#include <QRegularExpression>

namespace quorvale {

namespace {
// A month on the command line is exactly "YYYYMM"; the window would take
// " 202611" or "2026111" as text and find other rows.
QString monthArgument(const QString &option, const QString &text)
{
    static const QRegularExpression sixDigits(QStringLiteral("^[0-9]{6}$"));
    if (!sixDigits.match(text).hasMatch())
        throw UsageError(
            QStringLiteral("--%1: '%2' is not a month (use YYYYMM, six digits)").arg(option, text));
    return text;
}

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
    if (line.isSet(QStringLiteral("pdf")) && r.pdf.isEmpty())
        throw UsageError(QStringLiteral("--pdf needs a file name"));
    if (line.isSet(QStringLiteral("sheet")) && r.sheet.isEmpty())
        throw UsageError(QStringLiteral("--sheet needs a name"));
    if (line.isSet(QStringLiteral("month")))
        r.month = monthArgument(QStringLiteral("month"), line.value(QStringLiteral("month")));
    if (line.isSet(QStringLiteral("months"))) {
        const auto [first, last] =
            splitPair(QStringLiteral("months"), line.value(QStringLiteral("months")));
        r.months = {monthArgument(QStringLiteral("months"), first),
                    monthArgument(QStringLiteral("months"), last)};
    }
    if (line.isSet(QStringLiteral("cutoff"))) {
        r.cutoff = line.value(QStringLiteral("cutoff"));
        pickerDateArgument(QStringLiteral("cutoff"), *r.cutoff);
    }
    if (line.isSet(QStringLiteral("receipts"))) {
        r.receipts = splitPair(QStringLiteral("receipts"), line.value(QStringLiteral("receipts")));
        if (pickerDateArgument(QStringLiteral("receipts"), r.receipts->first) >
            pickerDateArgument(QStringLiteral("receipts"), r.receipts->second))
            throw UsageError(QStringLiteral("--receipts: the first date is after the last"));
    }
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
