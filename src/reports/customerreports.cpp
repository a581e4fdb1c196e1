#include "reports/customerreports.h"

#include "db/field.h"
#include "db/recordset.h"
#include "reports/sqltext.h"
#include "reports/tablefill.h"
#include "runtime/vb.h"

namespace quorvale {

namespace {

const QString kPersonalCustomer = QStringLiteral("个人客户");

// The owner, contract and tenant columns both import sheets end with.
const QStringList kImportSheetTail = {QStringLiteral("性别"),
                                      QStringLiteral("手机号码"),
                                      QStringLiteral("商务电话"),
                                      QStringLiteral("联系电话"),
                                      QStringLiteral("工作单位"),
                                      QStringLiteral("紧急联系人"),
                                      QStringLiteral("紧急联系电话"),
                                      QStringLiteral("业主原住址"),
                                      QStringLiteral("邮政编码"),
                                      QStringLiteral("企业法人代表"),
                                      QStringLiteral("企业联系人"),
                                      QStringLiteral("企业联系电话"),
                                      QStringLiteral("企业传真号码"),
                                      QStringLiteral("企业联系地址"),
                                      QStringLiteral("企业邮政编码"),
                                      QStringLiteral("出售合同号"),
                                      QStringLiteral("许可证号"),
                                      QStringLiteral("合同上名称"),
                                      QStringLiteral("合同上证件号码"),
                                      QStringLiteral("签约日期"),
                                      QStringLiteral("起始日期"),
                                      QStringLiteral("结束日期"),
                                      QStringLiteral("售楼单价"),
                                      QStringLiteral("售楼总价"),
                                      QStringLiteral("交付日期"),
                                      QStringLiteral("入伙通知书编号"),
                                      QStringLiteral("开户银行"),
                                      QStringLiteral("银行卡号"),
                                      QStringLiteral("入伙日期"),
                                      QStringLiteral("装修申请日期"),
                                      QStringLiteral("装修状态"),
                                      QStringLiteral("入住日期"),
                                      QStringLiteral("当前是否出租"),
                                      QStringLiteral("出租签约日期"),
                                      QStringLiteral("租户类型"),
                                      QStringLiteral("承租人姓名"),
                                      QStringLiteral("承租人企业名称"),
                                      QStringLiteral("承租人证件号码"),
                                      QStringLiteral("承租人性别"),
                                      QStringLiteral("承租人证件类型"),
                                      QStringLiteral("承租人手机号码"),
                                      QStringLiteral("承租人商务电话"),
                                      QStringLiteral("承租人原住址"),
                                      QStringLiteral("承租人邮政编码"),
                                      QStringLiteral("承租人企业法人代表"),
                                      QStringLiteral("承租人企业联系人"),
                                      QStringLiteral("承租人联系电话"),
                                      QStringLiteral("承租人企业传真号码"),
                                      QStringLiteral("承租人企业联系地址"),
                                      QStringLiteral("承租人企业邮政编码")};

// The import sheets' columns, all but the first left-aligned. Their trailing
// blanks size the grid's columns.
const QStringList kPropertyColumns = QStringList{QStringLiteral("管理处    "),
                                                 QStringLiteral("小区编号   "),
                                                 QStringLiteral("小区名称     "),
                                                 QStringLiteral("组团编号"),
                                                 QStringLiteral("组团名称           "),
                                                 QStringLiteral("大楼编号"),
                                                 QStringLiteral("大楼名称"),
                                                 QStringLiteral("单元编号"),
                                                 QStringLiteral("单元名称"),
                                                 QStringLiteral("楼层编号"),
                                                 QStringLiteral("房间编号"),
                                                 QStringLiteral("别墅编号"),
                                                 QStringLiteral("储藏室编号"),
                                                 QStringLiteral("计费面积"),
                                                 QStringLiteral("是否是主房号"),
                                                 QStringLiteral("客户性质"),
                                                 QStringLiteral("个人业主名称"),
                                                 QStringLiteral("企业业主名称"),
                                                 QStringLiteral("证件类型"),
                                                 QStringLiteral("证件号码"),
                                                 QStringLiteral("房产性质")} +
                                     kImportSheetTail;

const QStringList kParkingColumns =
    QStringList{QStringLiteral("管理处     "),       QStringLiteral("小区编号     "),
                QStringLiteral("小区名称       "),   QStringLiteral("停车场编号  "),
                QStringLiteral("停车场名称       "), QStringLiteral("车区编号"),
                QStringLiteral("车区名称"),          QStringLiteral("车位编号"),
                QStringLiteral("计费面积"),          QStringLiteral("客户性质"),
                QStringLiteral("个人业主名称"),      QStringLiteral("企业业主名称"),
                QStringLiteral("证件类型"),          QStringLiteral("证件号码")} +
    kImportSheetTail;

QString leftAlignedFormat(const QStringList &columns)
{
    return columns.join(QStringLiteral("|<"));
}

QString text(const Recordset &record, const QString &name)
{
    return record.Fields(name).text();
}

// The first of the fields that is not Null, as text; "" when all are.
QString firstNotNull(const Recordset &record, const QString &first, const QString &second)
{
    const Field a = record.Fields(first);
    if (!a.isNull())
        return a.text();
    return record.Fields(second).text();
}

} // namespace

// --- property customers -----------------------------------------------------

QString propertyCustomerStatement(const QString &officeCode)
{
    return buildingAddressSelect() +
           QStringLiteral(
               "设置管理处.GYD_DH,设置管理处.GYD_Name,室表.室,业主表.姓名,业主表.移动电话,"
               "室表.建筑面积, FWXZK.FWXZ_xz,业主表.进户日期,业主表.开始收费日期") +
           QStringLiteral(" FROM 楼表 INNER JOIN") +
           QStringLiteral(" 室表 ON 楼表.L_ID = 室表.L_ID INNER JOIN") +
           QStringLiteral(" 设置管理处 ON 设置管理处.GYD_DH = 楼表.管理处 left JOIN") +
           QStringLiteral(" 业主表 ON 室表.S_ID = 业主表.S_ID and 业主表.说明='新进户' left JOIN") +
           QStringLiteral(" FWXZK ON FWXZK.FWXZ_dh = 室表.房屋性质 ") +
           QStringLiteral(" Where 设置管理处.GYD_DH ='") + sqlQuoted(officeCode) +
           QStringLiteral("' ") + buildingRoomOrderBy();
}

QString floorOfRoom(const Field &room)
{
    const QString r = room.isNull() ? QStringLiteral("1") : room.text();
    QString floor = QStringLiteral("1");
    // Only whole-number rooms of three or more characters carry a floor;
    // letters and short numbers land on floor 1 on purpose.
    if (vbrt::CInt(vbrt::Val(r)) != 0 && r.size() > 2)
        floor = vbrt::Str(vbrt::Val(r.left(r.size() - 2)));
    if (floor == QLatin1String("0"))
        floor = QStringLiteral("1");
    return floor;
}

void fillPropertyCustomerRow(const Recordset &record, QStringList &row)
{
    using namespace PropertyColumn;
    const QString officeName = text(record, QStringLiteral("GYD_Name"));
    row[Office] = officeName;
    row[OfficeCode] = text(record, QStringLiteral("GYD_DH"));
    row[EstateName] = officeName;
    row[GroupName] = text(record, QStringLiteral("DZ"));
    const Field room = record.Fields(QStringLiteral("室"));
    row[Floor] = floorOfRoom(room);
    row[Room] = room.text();
    row[Area] = text(record, QStringLiteral("建筑面积"));
    row[OwnerName] = text(record, QStringLiteral("姓名"));
    row[CustomerKind] = row[OwnerName].isEmpty() ? QString() : kPersonalCustomer;
    row[HouseNature] = text(record, QStringLiteral("FWXZ_xz"));
    row[MobilePhone] = text(record, QStringLiteral("移动电话"));
    const QString movedIn = text(record, QStringLiteral("进户日期"));
    row[MovedIn] = movedIn;
    row[OccupiedSince] = movedIn;
}

void computePropertyCustomers(const ConnectionPtr &connection, const ReportParams &params,
                              TableFill &fill)
{
    fill.run(connection, propertyCustomerStatement(params.officeCode), fillPropertyCustomerRow,
             TableFill::EarlierRows::DropAfterOpen);
}

ReportDefinition propertyCustomerDefinition()
{
    ReportDefinition d;
    d.windowName = QStringLiteral("frm收款日报表");
    d.caption = QStringLiteral("房产客户-基础数据表");
    d.gridName = QStringLiteral("MSFlexGrid1");
    d.formatString = leftAlignedFormat(kPropertyColumns);
    d.officeStyle = OfficeQueryStyle::Property;
    d.compute = computePropertyCustomers;
    d.exportVariant = ExportVariant::Customer;
    d.exportTitleSuffix = QStringLiteral(" 房产数据");
    d.exportTemplate = QStringLiteral("房产数据模板");
    return d;
}

// --- parking customers ------------------------------------------------------

QString parkingCustomerStatement(const QString &officeCode)
{
    return QStringLiteral(
               "SELECT 设置管理处.GYD_DH,设置管理处.GYD_Name,车库名.车库名,车位说明表.车库编号,"
               "车位说明表.车位编号,车位说明表.产权类别,车位说明表.计费日期,"
               "车位申请登记表.登记日期,车位说明表.产权人,车位申请登记表.车主姓名") +
           QStringLiteral(" FROM 车库名 INNER JOIN") +
           QStringLiteral(
               " 车位说明表 ON 车位说明表.车库编号 = 车库名.车库编号 and 车位说明表.管理处 = "
               "车库名.管理处 INNER JOIN") +
           QStringLiteral(" 设置管理处 ON 设置管理处.GYD_DH = 车位说明表.管理处 left join ") +
           QStringLiteral(
               " 车位申请登记表 ON 车位说明表.车库编号 = 车位申请登记表.车库编号 and "
               "车位说明表.管理处 = 车位申请登记表.管理处 and 车位说明表.车位编号 = "
               "车位申请登记表.车位编号 and 车位说明表.DJ_ID = 车位申请登记表.登记ID and "
               "车位申请登记表.结账日期 is null") +
           QStringLiteral(" Where 车库名.管理处 ='") + sqlQuoted(officeCode) +
           QStringLiteral("' ") +
           QStringLiteral(" order by 车位说明表.车库编号,车位说明表.车位编号");
}

void fillParkingCustomerRow(const Recordset &record, QStringList &row)
{
    using namespace ParkingColumn;
    const QString officeName = text(record, QStringLiteral("GYD_Name"));
    row[Office] = officeName;
    row[OfficeCode] = text(record, QStringLiteral("GYD_DH"));
    row[EstateName] = officeName;
    row[CarParkCode] = text(record, QStringLiteral("车库编号"));
    row[CarParkName] = text(record, QStringLiteral("车库名"));
    row[Space] = text(record, QStringLiteral("车位编号"));
    // The open application's applicant and date, else the space's own.
    row[OwnerName] = firstNotNull(record, QStringLiteral("车主姓名"), QStringLiteral("产权人"));
    row[CustomerKind] = row[OwnerName].isEmpty() ? QString() : kPersonalCustomer;
    row[MovedIn] = firstNotNull(record, QStringLiteral("登记日期"), QStringLiteral("计费日期"));
    row[OccupiedSince] = row[MovedIn];
}

void computeParkingCustomers(const ConnectionPtr &connection, const ReportParams &params,
                             TableFill &fill)
{
    fill.run(connection, parkingCustomerStatement(params.officeCode), fillParkingCustomerRow,
             TableFill::EarlierRows::DropAfterOpen);
}

ReportDefinition parkingCustomerDefinition()
{
    ReportDefinition d;
    d.windowName = QStringLiteral("frm车位基础表");
    d.caption = QStringLiteral("车位客户-基础数据表");
    d.gridName = QStringLiteral("MSFlexGrid1");
    d.formatString = leftAlignedFormat(kParkingColumns);
    d.officeStyle = OfficeQueryStyle::Parking;
    d.compute = computeParkingCustomers;
    d.exportVariant = ExportVariant::Customer;
    d.exportTitleSuffix = QStringLiteral(" 车位数据模板");
    d.exportTemplate = QStringLiteral("车位数据模板");
    return d;
}

} // namespace quorvale
