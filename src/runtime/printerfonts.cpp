#include "runtime/printerfonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QStringList>

namespace quorvale {

void ensureCjkFontSubstitutes()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    const QStringList candidates = {
        QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("Noto Sans CJK SC"),
        QStringLiteral("Noto Serif CJK SC"),   QStringLiteral("WenQuanYi Zen Hei"),
        QStringLiteral("AR PL UMing CN"),      QStringLiteral("Droid Sans Fallback")};
    QStringList installed;
    for (const QString &family : candidates) {
        if (QFontDatabase::hasFamily(family))
            installed.append(family);
    }
    if (installed.isEmpty())
        return;
    const QStringList designed = {QStringLiteral("宋体"),     QStringLiteral("SimSun"),
                                  QStringLiteral("微软雅黑"), QStringLiteral("Microsoft YaHei"),
                                  QStringLiteral("新宋体"),   QStringLiteral("黑体")};
    for (const QString &family : designed) {
        if (!QFontDatabase::hasFamily(family))
            QFont::insertSubstitutions(family, installed);
    }
}

} // namespace quorvale
