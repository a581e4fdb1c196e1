#include "reports/officelist.h"

#include "db/recordset.h"
#include "runtime/vb.h"

#include <cmath>

#include "reports/sqltext.h"

namespace quorvale {

QString officeStatement(OfficeQueryStyle style, bool hasProjectAudit, const QString &deptCode)
{
    // The blanks before "Order By" are the windows' own and kept as written.
    if (hasProjectAudit) {
        const QString gap =
            style == OfficeQueryStyle::Property ? QStringLiteral(" ") : QStringLiteral("  ");
        return QStringLiteral("Select GYD_DH,GYD_Name,商用物业  From 设置管理处") + gap +
               QStringLiteral("Order By len(GYD_dh),GYD_DH");
    }
    QString gap;
    switch (style) {
    case OfficeQueryStyle::Property:
        gap = QStringLiteral(" ");
        break;
    case OfficeQueryStyle::Parking:
        gap = QStringLiteral("  ");
        break;
    case OfficeQueryStyle::Finance:
        gap = QStringLiteral("   ");
        break;
    }
    return QStringLiteral(
               "Select  GYD_DH,GYD_Name,商用物业  From 设置管理处  Where 对应部门代号='") +
           sqlQuoted(deptCode) + QStringLiteral("'") + gap +
           QStringLiteral("Order By len(GYD_dh),GYD_DH");
}

QString officeItemText(const QString &code, const QString &name)
{
    return code + QLatin1Char(' ') + name;
}

QString officeCodeOf(const QString &itemText)
{
    const qsizetype blank = itemText.indexOf(QLatin1Char(' '));
    return blank < 0 ? itemText : itemText.left(blank);
}

QString officeNameOf(const QString &itemText)
{
    const qsizetype blank = itemText.indexOf(QLatin1Char(' '));
    return itemText.mid(blank + 1);
}

OfficeItem officeItemOf(const Recordset &record)
{
    const Field commercial = record.Fields(QStringLiteral("商用物业"));
    return {officeItemText(record.Fields(QStringLiteral("GYD_DH")).text(),
                           record.Fields(QStringLiteral("GYD_Name")).text()),
            commercial.isNull() ? 0 : int(std::lround(vbrt::Val(commercial.text())))};
}

} // namespace quorvale
