#include "output/headermerge.h"

#include "runtime/vb.h"

namespace quorvale {

QVector<HeaderMerge> headerMerges(const QStringList &upper, const QStringList &lower)
{
    QVector<HeaderMerge> merges;
    const int count = int(qMin(upper.size(), lower.size()));
    int start = 0;
    while (start < count) {
        const QString text = vbrt::Trim(upper[start]);
        int end = start;
        while (!text.isEmpty() && end + 1 < count && vbrt::Trim(upper[end + 1]) == text)
            ++end;
        if (end > start)
            merges.append({1, start + 1, 1, end + 1});
        else if (!text.isEmpty() && vbrt::Trim(lower[start]) == text)
            merges.append({1, start + 1, 2, start + 1});
        start = end + 1;
    }
    return merges;
}

} // namespace quorvale
