#include "tsql/tsqlbatches.h"

#include <QStringView>

namespace quorvale {

namespace {

bool isGoLine(QStringView line)
{
    return line.trimmed().compare(QLatin1String("GO"), Qt::CaseInsensitive) == 0;
}

} // namespace

int TsqlBatch::lineOf(int position) const
{
    qsizetype end = qBound(qsizetype(0), qsizetype(position) - 1, text.size());
    // Without a position, the line where the batch's text begins.
    if (position <= 0)
        while (end < text.size() && text.at(end).isSpace())
            ++end;
    return firstLine + int(QStringView(text).left(end).count(QLatin1Char('\n')));
}

QList<TsqlBatch> tsqlBatches(const QString &script)
{
    QList<TsqlBatch> batches;
    qsizetype batchStart = 0;
    int batchLine = 1;
    int line = 1;
    const auto flush = [&](qsizetype end) {
        TsqlBatch batch{script.mid(batchStart, end - batchStart), batchLine,
                        int(batches.size()) + 1};
        if (!batch.text.trimmed().isEmpty())
            batches.append(batch);
    };
    qsizetype pos = 0;
    while (pos <= script.size()) {
        qsizetype newline = script.indexOf(QLatin1Char('\n'), pos);
        const qsizetype lineEnd = newline < 0 ? script.size() : newline;
        if (isGoLine(QStringView(script).mid(pos, lineEnd - pos))) {
            flush(pos);
            batchStart = newline < 0 ? script.size() : newline + 1;
            batchLine = line + 1;
        }
        if (newline < 0)
            break;
        pos = newline + 1;
        ++line;
    }
    flush(script.size());
    return batches;
}

} // namespace quorvale
