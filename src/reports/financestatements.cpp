#include "reports/financestatements.h"

#include "reports/sqltext.h"
#include "runtime/vb.h"

namespace quorvale {

namespace {

QString isoDate(const QDate &date)
{
    return sqlQuoted(vbrt::formatIsoDate(date));
}

const QString kPropertyJoins =
    QStringLiteral(" FROM 楼表 INNER JOIN") +
    QStringLiteral(" 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN") +
    QStringLiteral(" 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 INNER JOIN") +
    QStringLiteral(" 业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' INNER JOIN") +
    QStringLiteral(" WYZJ on  WYZJ.zh_ID = 业主表.ZH_ID INNER JOIN") +
    QStringLiteral(" SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH LEFT JOIN") +
    QStringLiteral(" FWXZK on  WYZJ.FWXZ_DH = FWXZK.FWXZ_dh ");

const QString kReceiptColumns = QStringLiteral(",WYZJ.zj_skrq,wyzj.发票号码,wyzj.收款方式");

const QString kRentedSelect = QStringLiteral(
    "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位申请登记表.车库编号, 车库名.车库名, "
    "车位申请登记表.车位编号,DJ_ID, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM");
const QString kRentedJoins =
    QStringLiteral(" FROM WYZJ  INNER JOIN   车位申请登记表  ON WYZJ.DJ_ID=车位申请登记表.登记ID "
                   "INNER JOIN ") +
    QStringLiteral(
        " 车库名 ON 车位申请登记表.车库编号 = 车库名.车库编号 and 车位申请登记表.管理处 = "
        "车库名.管理处 INNER JOIN") +
    QStringLiteral(" 设置管理处 ON 设置管理处.GYD_DH = 车位申请登记表.管理处 INNER join ") +
    QStringLiteral(" SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH ");
const QString kRentedOrder = QStringLiteral(
    " ORDER BY  车位申请登记表.车库编号,  车位申请登记表.车位编号,WYZJ.DJ_ID ,WYZJ.ZJ_CNY");

const QString kOwnedSelect = QStringLiteral(
    "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车位说明表.车库编号, 车库名.车库名, "
    "车位说明表.车位编号,cw_id, WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM");
const QString kOwnedJoins =
    QStringLiteral(" FROM WYZJ  INNER JOIN 车位产权 ON WYZJ.cw_id=车位产权.ID INNER JOIN") +
    QStringLiteral(" 车位说明表 ON 车位产权.车位ID = 车位说明表.ID INNER JOIN") +
    QStringLiteral(" 车库名 ON 车位说明表.车库编号 = 车库名.车库编号 and 车位说明表.管理处 = "
                   "车库名.管理处 INNER JOIN") +
    QStringLiteral(" 设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 INNER join ") +
    QStringLiteral(" SETUPSFXM on  WYZJ.ZJ_LX = SETUPSFXM.DH ");
const QString kOwnedOrder =
    QStringLiteral(" ORDER BY  车位说明表.车库编号,  车位说明表.车位编号,WYZJ.cw_id ,WYZJ.ZJ_CNY");

const QString kByFeeItem = QStringLiteral(",WYZJ.ZJ_LX");

QString officeCondition(const ReportParams &p)
{
    return QStringLiteral(" Where 设置管理处.GYD_DH ='") + sqlQuoted(p.officeCode) +
           QLatin1Char('\'');
}

// Outstanding: never received, or received after the cut-off text. The
// property and parking statements bracket the test differently.
QString arrearsPeriod(const ReportParams &p, bool parking)
{
    QString text = parking ? QStringLiteral(" and  (WYZJ.ZJ_SKRQ Is Null OR (ZJ_SKRQ>'")
                           : QStringLiteral(" and  ((WYZJ.ZJ_SKRQ Is Null) OR (ZJ_SKRQ>'");
    text += sqlQuoted(p.receiptCutOffText) + QStringLiteral("')) AND  ");
    if (!p.monthRange)
        return text + QStringLiteral("ZJ_Cny<='") + sqlQuoted(p.month) + QLatin1Char('\'');
    return text + QStringLiteral("(ZJ_Cny>='") + sqlQuoted(p.firstMonth) +
           QStringLiteral("' AND ZJ_CNY<='") + sqlQuoted(p.lastMonth) + QStringLiteral("')");
}

// Paid (by the receipt-date mode) for a month after the chosen one or inside
// the chosen range.
QString advanceConditions(const ReportParams &p)
{
    QString text = officeCondition(p) + QStringLiteral(" and WYZJ.ZJ_LX in (") + p.feeCodeList +
                   QLatin1Char(')');
    if (!p.receiptRange)
        text += QStringLiteral(" and (WYZJ.ZJ_SKRQ Is Not Null AND WYZJ.ZJ_SKRQ <='") +
                isoDate(p.receiptCutOff) + QStringLiteral("')");
    else
        text += QStringLiteral(" and (WYZJ.ZJ_SKRQ Is Not Null AND (ZJ_SKRQ Between '") +
                isoDate(p.receiptFrom) + QStringLiteral("' and '") + isoDate(p.receiptTo) +
                QStringLiteral("'))");
    if (!p.monthRange)
        text += QStringLiteral(" AND (WYZJ.ZJ_Cny>'") + sqlQuoted(p.month) + QStringLiteral("')");
    else
        text += QStringLiteral(" AND (WYZJ.ZJ_Cny>='") + sqlQuoted(p.firstMonth) +
                QStringLiteral("' AND WYZJ.ZJ_CNY<='") + sqlQuoted(p.lastMonth) +
                QStringLiteral("')");
    return text;
}

QString propertyArrears(const ReportParams &p)
{
    return buildingAddressSelect() +
           QStringLiteral(
               "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,FWXZK.FWXZ_xz, "
               "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM") +
           kPropertyJoins + officeCondition(p) + QStringLiteral(" and WYZJ.ZJ_LX  in (") +
           p.feeCodeList + QLatin1Char(')') + arrearsPeriod(p, false) + buildingRoomOrderBy() +
           QStringLiteral(",WYZJ.zh_id,WYZJ.ZJ_CNY,WYZJ.ZJ_LX");
}

QString propertyAdvance(const ReportParams &p)
{
    return buildingAddressSelect() +
           QStringLiteral(
               "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名, FWXZK.FWXZ_xz, "
               "WYZJ.ZJ_CNY ,WYZJ.ZJ_JE,WYZJ.ZJ_LX,SETUPSFXM.XM") +
           kReceiptColumns + kPropertyJoins + advanceConditions(p) + buildingRoomOrderBy() +
           QStringLiteral(",WYZJ.ZJ_CNY");
}

// Only never-received parking fees are arrears: the cut-off test that
// follows cannot widen the list.
QString parkingArrearsConditions(const ReportParams &p, bool rented)
{
    return officeCondition(p) + QStringLiteral(" and ZJ_SKRQ is null and") +
           (rented ? QStringLiteral("  ") : QStringLiteral(" ")) +
           QStringLiteral("WYZJ.ZJ_LX  in (") + p.feeCodeList + QLatin1Char(')') +
           arrearsPeriod(p, true);
}

} // namespace

QStringList financeStatements(FinanceReportKind kind, const ReportParams &params)
{
    switch (kind) {
    case FinanceReportKind::PropertyArrears:
        return {propertyArrears(params)};
    case FinanceReportKind::PropertyAdvance:
        return {propertyAdvance(params)};
    case FinanceReportKind::ParkingArrears:
        return {kRentedSelect + kRentedJoins + parkingArrearsConditions(params, true) +
                    kRentedOrder + kByFeeItem,
                kOwnedSelect + kOwnedJoins + parkingArrearsConditions(params, false) + kOwnedOrder +
                    kByFeeItem};
    case FinanceReportKind::ParkingAdvance:
        return {kRentedSelect + kReceiptColumns + kRentedJoins + advanceConditions(params) +
                    kRentedOrder,
                kOwnedSelect + kReceiptColumns + kOwnedJoins + advanceConditions(params) +
                    kOwnedOrder};
    }
    return {};
}

} // namespace quorvale
