#include "reports/feecodelist.h"

#include "db/recordset.h"
#include "reports/sqltext.h"

namespace quorvale {

QString FeeCodeList::statement(FeeCategory category)
{
    if (category == FeeCategory::Parking)
        return QStringLiteral("SELECT *  ") +
               QStringLiteral(" FROM SetupSFXM  where 收费类别= '停车收费' AND 终止日期 Is Null") +
               QStringLiteral(" ORDER BY DH");
    return QStringLiteral("SELECT * ") + QStringLiteral(" FROM SetupSFXM") +
           QStringLiteral(" Where 收费类别='日常收费' and 终止日期 Is Null") +
           QStringLiteral(" ORDER BY DH");
}

FeeCodeList FeeCodeList::load(FeeCategory category, const ConnectionPtr &connection)
{
    FeeCodeList list;
    Recordset rs;
    rs.Open(statement(category), connection, 0, 1, -1);
    while (!rs.eof()) {
        list.add(rs.Fields(QStringLiteral("DH")).text(), rs.Fields(QStringLiteral("XM")).text());
        rs.MoveNext();
    }
    return list;
}

void FeeCodeList::add(const QString &code, const QString &name)
{
    m_entries.append(code + QLatin1Char(' ') + name);
    if (!m_text.isEmpty())
        m_text += QLatin1Char(',');
    m_text += QLatin1Char('\'') + sqlQuoted(code) + QLatin1Char('\'');
}

} // namespace quorvale
