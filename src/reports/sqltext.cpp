#include "reports/sqltext.h"

namespace quorvale {

QString buildingAddressSelect()
{
    QString select = QStringLiteral("Select");
    for (int part = 1; part <= 4; ++part) {
        for (const QString &column :
             {QStringLiteral("地址%1").arg(part), QStringLiteral("字%1").arg(part)}) {
            select += QStringLiteral(" Case When 楼表.%1 Is Not Null Then 楼表.%1 Else '' End")
                          .arg(column);
            select += part == 4 && column.startsWith(QStringLiteral("字"))
                          ? QStringLiteral(" AS DZ,")
                          : QStringLiteral(" + ");
        }
    }
    return select;
}

QString buildingRoomOrderBy()
{
    return QStringLiteral(
        " ORDER BY  LEN(楼表.地址1), 楼表.地址1, LEN(楼表.地址2), 楼表.地址2, "
        "LEN(楼表.地址3), 楼表.地址3, LEN(楼表.地址4), 楼表.地址4,len(室表.室),室表.室");
}

} // namespace quorvale
