#include "dbtools/demodata.h"

#include "dbtools/bulkinsert.h"
#include "runtime/runtimeerror.h"

#include <QSqlError>
#include <QSqlQuery>
#include <iterator>
#include <map>
#include <memory>

namespace quorvale {

namespace {

// splitmix64: tiny and gives the same sequence on every platform and compiler.
class DemoRandom {
  public:
    explicit DemoRandom(quint64 seed) : m_state(seed) {}
    quint64 next()
    {
        quint64 z = (m_state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    int below(int n) { return int(next() % quint64(n)); }

  private:
    quint64 m_state;
};

const char *const kSurnames[] = {"王", "李", "张", "刘", "陈", "杨", "黄", "赵", "吴", "周",
                                 "徐", "孙", "马", "朱", "胡", "郭", "何", "高", "林", "罗"};
const char *const kGivenNames[] = {"伟",   "芳",   "娜",   "秀英", "敏", "静", "丽",   "强",
                                   "磊",   "军",   "洋",   "勇",   "艳", "杰", "娟",   "涛",
                                   "明",   "超",   "秀兰", "霞",   "平", "刚", "桂英", "建华",
                                   "志强", "海燕", "晓东", "丹",   "鹏", "宇"};
const char *const kPaymentMethods[] = {"现金", "银行转账", "微信支付", "支付宝"};

// How an account pays; the cycle guarantees every kind in every office.
enum class Payer { Punctual, Late, Debtor, Advance };
constexpr Payer P = Payer::Punctual, L = Payer::Late, D = Payer::Debtor, A = Payer::Advance;
constexpr Payer kPayerCycle[] = {P, P, A, P, D, P, L, P, P, A, P, P, L, P, D, P, P, A, P, L};

Payer payerFor(int index)
{
    return kPayerCycle[index % int(std::size(kPayerCycle))];
}

QVariant text(const char *value)
{
    return value ? QVariant(QString::fromUtf8(value)) : QVariant();
}

QString monthText(const QDate &month)
{
    return month.toString(QStringLiteral("yyyyMM"));
}

QDate firstOfMonth(const QDate &date)
{
    return QDate(date.year(), date.month(), 1);
}

// Whole cents, so that amounts read back exactly.
QVariant money(qint64 cents)
{
    return double(cents) / 100.0;
}

// One ledger row belongs to an owner account, a rental application or an owned space.
struct LedgerOwner {
    QVariant zhId;
    QVariant djId;
    QVariant cwId;
};

struct FeeCharge {
    QString code;
    QVariant amount; // null: the amount is unknown
    int extraCents = 0;
    QDate lastMonth; // null: charged to the end
};

struct BuildingSpec {
    const char *office;
    const char *parts[8]; // 地址1, 字1, … 地址4, 字4
    QStringList rooms;
    const char *nature;
};

QStringList numberedRooms(int firstFloor, int lastFloor, int units, int width)
{
    QStringList rooms;
    for (int floor = firstFloor; floor <= lastFloor; ++floor)
        for (int unit = 1; unit <= units; ++unit)
            rooms << QString::number(floor * 100 + unit).rightJustified(width, QLatin1Char('0'));
    return rooms;
}

class DemoWriter {
  public:
    DemoWriter(const QSqlDatabase &db, const QDate &today)
        : m_db(db), m_today(today), m_thisMonth(firstOfMonth(today)),
          m_ledgerStart(m_thisMonth.addMonths(-23)), m_rng(20240601)
    {
    }

    void writeStaff();
    void writePrivileges();
    void writeOffices(bool withBenchmark);
    void writeFeeItems();
    void writeProperty();
    void writeParking();
    void writeBenchmark(int scale);

  private:
    BulkInsert &table(const QString &name, const QStringList &columns);
    void rows(const QString &name, const QStringList &columns, const QList<QVariantList> &values);
    QString personName();
    QVariant mobile(int index);
    QDate paymentDate(Payer payer, int account, const QDate &month);
    void ledger(const LedgerOwner &owner, const QVariant &nature, const QList<FeeCharge> &fees,
                const QDate &from, const QDate &to, Payer payer, int account);
    void ledgerRow(const LedgerOwner &owner, const QVariant &nature, const QString &fee,
                   const QDate &month, const QVariant &amount, const QDate &paid);
    QList<FeeCharge> propertyFees(const QVariant &area, bool commercial) const;

    QSqlDatabase m_db;
    QDate m_today;
    QDate m_thisMonth;
    QDate m_ledgerStart;
    DemoRandom m_rng;
    std::map<QString, std::unique_ptr<BulkInsert>> m_tables;
    int m_lastBuilding = 0;
    int m_lastRoom = 0;
    int m_lastAccount = 0;
    int m_lastLedger = 0;
    int m_lastInvoice = 0;
    int m_lastSpace = 0;
    int m_lastApplication = 0;
    int m_lastTitle = 0;
    int m_roomIndex = 0;
    int m_spaceIndex = 0;
};

const QStringList kLedgerColumns = {"ZJ_ID", "zh_ID", "DJ_ID",   "cw_id",    "FWXZ_DH", "ZJ_CNY",
                                    "ZJ_LX", "ZJ_JE", "ZJ_SKRQ", "发票号码", "收款方式"};
const QStringList kRoomColumns = {"S_ID", "L_ID", "室", "建筑面积", "房屋性质"};
const QStringList kOwnerColumns = {"ZH_ID",    "S_ID",         "姓名", "移动电话",
                                   "进户日期", "开始收费日期", "说明"};
const QStringList kBuildingColumns = {"L_ID", "管理处", "地址1", "字1",   "地址2",
                                      "字2",  "地址3",  "字3",   "地址4", "字4"};
const QStringList kSpaceColumns = {"ID",       "管理处",   "车库编号", "车位编号",
                                   "产权类别", "计费日期", "产权人",   "DJ_ID"};
const QStringList kApplicationColumns = {"登记ID",   "管理处",   "车库编号", "车位编号",
                                         "登记日期", "车主姓名", "结账日期"};

BulkInsert &DemoWriter::table(const QString &name, const QStringList &columns)
{
    auto &slot = m_tables[name];
    if (!slot)
        slot = std::make_unique<BulkInsert>(m_db, name, columns);
    return *slot;
}

void DemoWriter::rows(const QString &name, const QStringList &columns,
                      const QList<QVariantList> &values)
{
    BulkInsert &insert = table(name, columns);
    for (const QVariantList &row : values)
        insert.add(row);
}

QString DemoWriter::personName()
{
    const quint64 r = m_rng.next();
    return QString::fromUtf8(kSurnames[r % std::size(kSurnames)]) +
           QString::fromUtf8(kGivenNames[(r >> 16) % std::size(kGivenNames)]);
}

QVariant DemoWriter::mobile(int index)
{
    if (index % 9 == 5)
        return QVariant();
    return QStringLiteral("13%1%2")
        .arg(int(m_rng.next() % 10))
        .arg(qulonglong(m_rng.next() % 100000000ULL), 8, 10, QLatin1Char('0'));
}

void DemoWriter::writeStaff()
{
    const QDate hired = m_thisMonth.addYears(-5);
    rows("职能部门类别", {"部门类别代号", "部门类别名称"},
         {{"01", "物业管理类"}, {"02", "职能管理类"}});
    rows("职能部门new", {"职能部门编号", "职能部门名称", "职能部门类别代号"},
         {{"D01", "城东管理部", "01"}, {"D02", "城西管理部", "01"}, {"D03", "财务部", "02"}});
    rows("岗位类别", {"岗位类别编号", "岗位类别名称"},
         {{"01", "管理岗"}, {"02", "专业技术岗"}, {"03", "操作岗"}});
    rows("岗位信息new", {"岗位代号", "岗位名称", "职能部门代号", "岗位类别代号"},
         {{"GW01", "管理处主任", "D01", "01"},
          {"GW02", "收费员", "D01", "03"},
          {"GW03", "管理处主任", "D02", "01"},
          {"GW04", "会计", "D03", "02"},
          {"GW05", "财务经理", "D03", "01"},
          {"GW06", "客服专员", "D02", "03"}});
    rows("员工档案", {"工号", "姓名", "性别", "帐号密码", "入职日期", "离职日期"},
         {{"1001", "张伟", "男", "123456", hired, QVariant()},
          {"1002", "李娜", "女", "888888", hired.addMonths(-20), QVariant()},
          {"1003", "王芳", "女", "666666", hired.addMonths(7), m_thisMonth.addMonths(-3)},
          {"1004", "刘洋", "男", "000000", hired.addMonths(14), QVariant()},
          {"1005", "陈静", "女", "1234", hired.addMonths(-3), QVariant()}});
    rows("岗位员工new", {"员工代号", "岗位代号", "主要岗位", "上岗日期", "离岗日期"},
         {{"1001", "GW02", true, hired, QVariant()},
          {"1002", "GW05", true, hired, QVariant()},
          {"1002", "GW01", false, hired.addYears(1), QVariant()},
          {"1002", "GW03", false, hired, m_thisMonth.addYears(-1)},
          {"1003", "GW06", true, hired.addMonths(7), QVariant()},
          {"1004", "GW04", true, hired.addMonths(14), QVariant()},
          {"1005", "GW03", true, hired, QVariant()},
          {"1005", "GW06", false, hired, m_thisMonth.addMonths(-6)}});
}

void DemoWriter::writePrivileges()
{
    rows("专项审核权限表", {"ID", "类型", "部门代号", "岗位代号"},
         {{1, "项目管理", "D03", "GW05"},
          {2, "费用减免", "D01", "GW02"},
          {3, "项目管理", "D01", "GW01"},
          {4, "项目管理", "D02", "GW01"}});
    const QString memo = QStringLiteral("统计报表");
    rows("GroupPrivilege", {"GroupID", "FormName", "Popedom", "Memo"},
         {{"G01", "房产客户", true, memo},
          {"G01", "车位客户", true, memo},
          {"G02", "财务数据欠收表房产", true, memo},
          {"G02", "财务数据欠收表车位", true, memo},
          {"G02", "财务数据预收表房产", true, memo},
          {"G02", "财务数据预收表车位", true, memo},
          {"G03", "车位客户", false, memo},
          {"G03", "财务数据预收表车位", false, memo},
          {"G04", "收费登记", true, "收费管理"}});
    rows("岗位权限设置", {"id", "组代号", "岗位代号", "授权"},
         {{1, "G01", "GW02", true},
          {2, "G03", "GW02", true},
          {3, "G01", "GW05", true},
          {4, "G02", "GW05", true},
          {5, "G01", "GW04", true},
          {6, "G02", "GW04", false},
          {7, "G01", "GW01", true},
          {8, "G02", "GW01", true},
          {9, "G01", "GW03", true},
          {10, "G03", "GW03", true},
          {11, "G04", "GW02", true}});
}

void DemoWriter::writeOffices(bool withBenchmark)
{
    QList<QVariantList> offices = {{"2", "幸福里花园", 0, "D01"},
                                   {"3", "翠湖苑", 0, "D02"},
                                   {"10", "阳光城", QVariant(), "D01"},
                                   {"1A", "金融中心写字楼", 1, "D01"}};
    if (withBenchmark)
        offices.append({"BIG", "基准测试管理处", 0, "D01"});
    rows("设置管理处", {"GYD_DH", "GYD_Name", "商用物业", "对应部门代号"}, offices);
    rows("FWXZK", {"FWXZ_dh", "FWXZ_xz"},
         {{"01", "住宅"}, {"02", "商铺"}, {"03", "公寓"}, {"04", "办公"}});
}

void DemoWriter::writeFeeItems()
{
    const QDate withdrawn = m_thisMonth.addMonths(-12);
    rows("SetupSFXM", {"DH", "XM", "收费类别", "终止日期"},
         {{"01", "物业管理费", "日常收费", QVariant()},
          {"02", "公共水电分摊费", "日常收费", QVariant()},
          {"03", "垃圾处理费", "日常收费", withdrawn},
          {"04", "本体维修基金", "日常收费", QVariant()},
          {"11", "月租车位费", "停车收费", QVariant()},
          {"12", "车位管理费", "停车收费", QVariant()},
          {"13", "临时停车费", "停车收费", withdrawn},
          {"21", "装修押金", "其他收费", QVariant()}});
}

// Payments fall before, on and after any cut-off; nothing is paid after today.
QDate DemoWriter::paymentDate(Payer payer, int account, const QDate &month)
{
    QDate paid;
    switch (payer) {
    case Payer::Punctual:
        paid = month.addDays(m_rng.below(28));
        break;
    case Payer::Late:
        paid = month.addMonths(1).addDays(m_rng.below(20));
        break;
    case Payer::Debtor:
        if (month >= m_thisMonth.addMonths(-(3 + account % 5)))
            return QDate();
        paid = month.addDays(m_rng.below(28));
        break;
    case Payer::Advance: {
        // Six months at a time, paid in the weeks before the first of them.
        const int offset =
            (month.year() - m_ledgerStart.year()) * 12 + month.month() - m_ledgerStart.month();
        const QDate blockStart = month.addMonths(-(offset % 6));
        if (blockStart > m_thisMonth)
            return m_thisMonth;
        paid = blockStart.addDays(-1 - (account * 7 + offset / 6) % 15);
        break;
    }
    }
    return paid > m_today ? QDate() : paid;
}

void DemoWriter::ledgerRow(const LedgerOwner &owner, const QVariant &nature, const QString &fee,
                           const QDate &month, const QVariant &amount, const QDate &paid)
{
    QVariant invoice;
    QVariant method;
    if (paid.isValid()) {
        ++m_lastInvoice;
        invoice = QStringLiteral("FP%1").arg(m_lastInvoice, 8, 10, QLatin1Char('0'));
        method = QString::fromUtf8(kPaymentMethods[m_lastInvoice % std::size(kPaymentMethods)]);
    }
    table("WYZJ", kLedgerColumns)
        .add({++m_lastLedger, owner.zhId, owner.djId, owner.cwId, nature, monthText(month), fee,
              amount, paid.isValid() ? QVariant(paid) : QVariant(), invoice, method});
}

// Months from `from` to `to`, both first days and inclusive; advance payers
// have paid half a year beyond `to` as well.
void DemoWriter::ledger(const LedgerOwner &owner, const QVariant &nature,
                        const QList<FeeCharge> &fees, const QDate &from, const QDate &to,
                        Payer payer, int account)
{
    QDate last = to;
    if (payer == Payer::Advance && to == m_thisMonth)
        last = to.addMonths(6);
    for (QDate month = qMax(from, m_ledgerStart); month <= last; month = month.addMonths(1)) {
        for (const FeeCharge &fee : fees) {
            if (fee.lastMonth.isValid() && month > fee.lastMonth)
                continue;
            QVariant amount = fee.amount;
            if (!amount.isNull() && fee.extraCents > 0)
                amount =
                    money(qRound64(amount.toDouble() * 100.0) + m_rng.below(fee.extraCents + 1));
            const QDate paid = paymentDate(payer, account, month);
            if (month > m_thisMonth && !paid.isValid())
                continue;
            ledgerRow(owner, nature, fee.code, month, amount, paid);
        }
    }
}

QList<FeeCharge> DemoWriter::propertyFees(const QVariant &area, bool commercial) const
{
    const QVariant management =
        area.isNull() ? QVariant()
                      : money(qRound64(area.toDouble() * (commercial ? 650.0 : 220.0)));
    if (commercial)
        return {{QStringLiteral("01"), management, 0, {}}};
    return {{QStringLiteral("01"), management, 0, {}},
            {QStringLiteral("02"), money(1200), 3350, {}},
            {QStringLiteral("03"), money(800), 0, m_thisMonth.addMonths(-13)}};
}

void DemoWriter::writeProperty()
{
    const QList<BuildingSpec> buildings = {
        {"2", {"幸福路18", "号", "2", "栋"}, numberedRooms(1, 6, 2, 4), "01"},
        {"2", {"幸福路18", "号", "10", "栋"}, numberedRooms(1, 10, 2, 0), "01"},
        {"2", {"幸福路18", "号", nullptr, nullptr, "3", "单元"}, {"11", "12", "21", "22"}, "01"},
        {"2", {"幸福路20"}, {"B201", "B202", "B203"}, "02"},
        {"10", {"阳光大道1", "号", "1", "栋", "1", "单元"}, numberedRooms(1, 12, 4, 4), "01"},
        {"10", {"阳光大道1", "号", "1", "栋", "2", "单元"}, numberedRooms(1, 12, 2, 4), "03"},
        {"10",
         {"阳光大道3", "号", "1", "期", "9", "栋", "1", "单元"},
         numberedRooms(1, 6, 2, 0),
         "01"},
        {"3", {"翠湖路6", "号", "1", "幢"}, numberedRooms(1, 8, 3, 0), "01"},
        {"3", {"翠湖路6", "号", "V1", "幢"}, {"1", "2", "123456"}, "01"},
        {"1A", {"金融街1", "号"}, numberedRooms(10, 12, 5, 0), "04"},
    };
    for (const BuildingSpec &b : buildings) {
        const int building = ++m_lastBuilding;
        QVariantList row = {building, b.office};
        for (const char *part : b.parts)
            row << text(part);
        table("楼表", kBuildingColumns).add(row);
        const bool commercial = qstrcmp(b.office, "1A") == 0;
        for (const QString &room : b.rooms) {
            const int roomId = ++m_lastRoom;
            const int index = m_roomIndex++;
            const bool firstBuilding = building == 1;
            QVariant area = money(4500 + m_rng.below(10000));
            QVariant nature = QString::fromUtf8(b.nature);
            if (firstBuilding && room == QLatin1String("0101"))
                nature = QStringLiteral("03");
            if (firstBuilding && (room == QLatin1String("0201") || room == QLatin1String("0301")))
                nature = QStringLiteral("99"); // a house nature nobody defined
            if (building == 3 && room == QLatin1String("21"))
                area = QVariant();
            if (building == 3 && room == QLatin1String("22"))
                nature = QVariant();
            table("室表", kRoomColumns).add({roomId, building, room, area, nature});

            const QList<FeeCharge> fees = propertyFees(area, commercial);
            if (building == 2 && room == QLatin1String("1002"))
                continue; // unsold: no owner at all
            if (firstBuilding && room == QLatin1String("0602")) {
                // Moved out, yet paid ahead: only "新进户" rows count in the reports.
                const int account = ++m_lastAccount;
                const QDate in = m_ledgerStart.addYears(-3);
                table("业主表", kOwnerColumns)
                    .add({account, roomId, personName(), mobile(index), in,
                          firstOfMonth(in).addMonths(1), "迁出户"});
                ledger({account, {}, {}}, nature, fees, m_ledgerStart, m_thisMonth, Payer::Advance,
                       account);
                continue;
            }
            QDate from = m_ledgerStart;
            if (index % 7 == 3) {
                // Sold on during the ledger's two years: the seller's account stops there.
                from = m_thisMonth.addMonths(-(6 + roomId % 12));
                const int seller = ++m_lastAccount;
                const QDate in = m_ledgerStart.addYears(-4);
                table("业主表", kOwnerColumns)
                    .add({seller, roomId, personName(), mobile(index + 1), in,
                          firstOfMonth(in).addMonths(1), "迁出户"});
                ledger({seller, {}, {}}, nature, fees, m_ledgerStart, from.addMonths(-1),
                       Payer::Punctual, seller);
            }
            const int account = ++m_lastAccount;
            const QDate in =
                from == m_ledgerStart
                    ? m_ledgerStart.addMonths(-(12 + m_rng.below(48))).addDays(m_rng.below(28))
                    : from.addDays(9);
            table("业主表", kOwnerColumns)
                .add({account, roomId, personName(), mobile(index), in,
                      firstOfMonth(in).addMonths(1), "新进户"});
            ledger({account, {}, {}}, nature, fees, from, m_thisMonth, payerFor(index), account);
        }
    }
}

void DemoWriter::writeParking()
{
    rows("车库名", {"管理处", "车库编号", "车库名"},
         {{"2", "CK01", "地下车库"},
          {"2", "CK02", "地面停车场"},
          {"2", "CK03", QVariant()},
          {"10", "CK01", "阳光城地下车库"},
          {"3", "CK01", "翠湖苑停车场"},
          {"1A", "CK01", "金融中心车库"}});

    struct Garage {
        const char *office;
        const char *code;
        QString prefix;
        int spaces;
        int width;
        int rentCents;
    };
    const QList<Garage> garages = {
        {"2", "CK01", "B1-", 24, 3, 35000}, {"2", "CK02", "D-", 8, 2, 20000},
        {"2", "CK03", "X-", 2, 2, 15000},   {"10", "CK01", "A", 16, 3, 30000},
        {"3", "CK01", "C", 8, 2, 25000},    {"1A", "CK01", "F", 4, 3, 60000}};
    // Rented, owned, vacant, title after a settled rental, settled rental only.
    enum Kind { Rented, Owned, Vacant, SettledOwned, SettledOnly, Both };
    constexpr Kind kKinds[] = {Rented, Owned,        Rented, Vacant,      Owned,
                               Rented, SettledOwned, Rented, SettledOnly, Owned};
    const QList<FeeCharge> management = {{QStringLiteral("12"), money(8000), 0, {}}};

    const auto application = [&](const Garage &g, const QString &space, const QDate &from,
                                 const QVariant &settled) {
        const int id = ++m_lastApplication;
        table("车位申请登记表", kApplicationColumns)
            .add({id, g.office, g.code, space, from, personName(), settled});
        return id;
    };

    for (const Garage &g : garages) {
        const QList<FeeCharge> rent = {{QStringLiteral("11"), money(g.rentCents), 0, {}}};
        for (int n = 1; n <= g.spaces; ++n) {
            const QString space =
                g.prefix + QString::number(n).rightJustified(g.width, QLatin1Char('0'));
            const int index = m_spaceIndex++;
            const int spaceId = ++m_lastSpace;
            const Kind kind = index == 0 ? Both : kKinds[index % int(std::size(kKinds))];
            const Payer payer = payerFor(index);
            QVariant rightKind = QStringLiteral("公共");
            QVariant charged;
            QVariant owner;
            QVariant current;

            if (kind == Rented || kind == Both) {
                const QDate from = m_thisMonth.addMonths(-(3 + index % 30)).addDays(index % 20);
                if (index % 4 == 2) {
                    // A previous tenant's settled application stays on file.
                    const QDate earlier = from.addYears(-2);
                    const int old = application(g, space, earlier, from.addDays(-1));
                    ledger({{}, old, {}}, {}, rent, firstOfMonth(earlier),
                           firstOfMonth(from).addMonths(-1), Payer::Punctual, old);
                }
                const int id = application(g, space, from, QVariant());
                current = id;
                rightKind = QStringLiteral("租赁");
                charged = from;
                QList<FeeCharge> fees = rent;
                if (kind == Rented && index % 10 == 2)
                    fees.first().amount = QVariant(); // rent not yet agreed
                ledger({{}, id, {}}, {}, fees, firstOfMonth(from), m_thisMonth, payer, id);
            }
            if (kind == SettledOwned || kind == SettledOnly) {
                const QDate from = m_thisMonth.addMonths(-30);
                const QDate settled = m_thisMonth.addMonths(-(8 + index % 6)).addDays(-1);
                const int id = application(g, space, from, settled);
                current = id;
                ledger({{}, id, {}}, {}, rent, firstOfMonth(from), firstOfMonth(settled),
                       Payer::Punctual, id);
                if (kind == SettledOwned)
                    charged = settled.addDays(1);
            }
            if (kind == Owned)
                charged = m_ledgerStart.addMonths(-(index % 40)).addDays(index % 25);
            if (kind == Owned || kind == SettledOwned || kind == Both) {
                const int title = ++m_lastTitle;
                rightKind = QStringLiteral("产权");
                owner = personName();
                table("车位产权", {"ID", "车位ID"}).add({title, spaceId});
                QList<FeeCharge> fees = management;
                if (index % 10 == 4)
                    fees.first().amount = QVariant(); // fee never set for this space
                ledger({{}, {}, title}, {}, fees, firstOfMonth(charged.toDate()), m_thisMonth,
                       payer, title);
                if (kind == Both) {
                    // Entries booked against the tenancy and the title at once.
                    const LedgerOwner twice{{}, current, title};
                    ledgerRow(twice, {}, QStringLiteral("12"), m_thisMonth, money(5000), QDate());
                    ledgerRow(twice, {}, QStringLiteral("12"), m_thisMonth.addMonths(1),
                              money(5000), m_thisMonth);
                }
            }
            table("车位说明表", kSpaceColumns)
                .add({spaceId, g.office, g.code, space, rightKind, charged, owner, current});
        }
    }

    // An application filed under a car park its office never set up.
    const Garage unknown{"2", "CK09", "Z-", 1, 2, 18000};
    const int orphan =
        application(unknown, QStringLiteral("Z-01"), m_thisMonth.addMonths(-4), QVariant());
    ledger({{}, orphan, {}}, {}, {{QStringLiteral("11"), money(18000), 0, {}}},
           m_thisMonth.addMonths(-4), m_thisMonth, Payer::Debtor, orphan);
}

// Each room and each space of office BIG bills last month (paid), this month
// (outstanding) and next month (paid on the first of this month), so every
// report run with its default parameters yields exactly `scale` rows.
void DemoWriter::writeBenchmark(int scale)
{
    const QDate lastMonth = m_thisMonth.addMonths(-1);
    const QDate nextMonth = m_thisMonth.addMonths(1);
    const QVariant office = QStringLiteral("BIG");
    constexpr int roomsPerBuilding = 100;
    int building = 0;
    for (int i = 0; i < scale; ++i) {
        if (i % roomsPerBuilding == 0) {
            building = ++m_lastBuilding;
            table("楼表", kBuildingColumns)
                .add({building, office, "基准路8", "号", QString::number(i / roomsPerBuilding + 1),
                      "栋", QVariant(), QVariant(), QVariant(), QVariant()});
        }
        const int within = i % roomsPerBuilding;
        const QString room = QString::number((within / 4 + 1) * 100 + within % 4 + 1)
                                 .rightJustified(4, QLatin1Char('0'));
        const int roomId = ++m_lastRoom;
        const QVariant area = money(6000 + (i % 80) * 100 + 50);
        table("室表", kRoomColumns).add({roomId, building, room, area, "01"});
        const int account = ++m_lastAccount;
        table("业主表", kOwnerColumns)
            .add(
                {account, roomId, personName(), mobile(i), m_ledgerStart, m_ledgerStart, "新进户"});
        const QVariant fee = money(qRound64(area.toDouble() * 220.0));
        const LedgerOwner owner{account, {}, {}};
        const QVariant nature = QStringLiteral("01");
        const QString code = QStringLiteral("01");
        ledgerRow(owner, nature, code, lastMonth, fee, lastMonth.addDays(9));
        ledgerRow(owner, nature, code, m_thisMonth, fee, QDate());
        ledgerRow(owner, nature, code, nextMonth, fee, m_thisMonth);
    }

    constexpr int garages = 10;
    for (int g = 1; g <= garages; ++g)
        table("车库名", {"管理处", "车库编号", "车库名"})
            .add({office, QStringLiteral("P%1").arg(g, 2, 10, QLatin1Char('0')),
                  QStringLiteral("基准车库%1").arg(g)});
    for (int i = 0; i < scale; ++i) {
        const QString garage = QStringLiteral("P%1").arg(i % garages + 1, 2, 10, QLatin1Char('0'));
        const QString space = QStringLiteral("B%1").arg(i + 1, 6, 10, QLatin1Char('0'));
        const int spaceId = ++m_lastSpace;
        LedgerOwner owner;
        QString code;
        QVariant amount;
        if (i % 2 == 0) {
            const int id = ++m_lastApplication;
            table("车位申请登记表", kApplicationColumns)
                .add({id, office, garage, space, m_ledgerStart, personName(), QVariant()});
            table("车位说明表", kSpaceColumns)
                .add({spaceId, office, garage, space, "租赁", m_ledgerStart, QVariant(), id});
            owner.djId = id;
            code = QStringLiteral("11");
            amount = money(30000);
        } else {
            const int title = ++m_lastTitle;
            table("车位产权", {"ID", "车位ID"}).add({title, spaceId});
            table("车位说明表", kSpaceColumns)
                .add({spaceId, office, garage, space, "产权", m_ledgerStart, personName(),
                      QVariant()});
            owner.cwId = title;
            code = QStringLiteral("12");
            amount = money(8000);
        }
        ledgerRow(owner, {}, code, lastMonth, amount, lastMonth.addDays(9));
        ledgerRow(owner, {}, code, m_thisMonth, amount, QDate());
        ledgerRow(owner, {}, code, nextMonth, amount, m_thisMonth);
    }
}

} // namespace

void loadDemoData(const QSqlDatabase &db, const QDate &today, int scale)
{
    QSqlDatabase database = db;
    if (!database.transaction())
        throw RuntimeError(ErrorNumber::DatabaseError, database.lastError().text());
    try {
        DemoWriter writer(database, today);
        writer.writeStaff();
        writer.writePrivileges();
        writer.writeOffices(scale > 0);
        writer.writeFeeItems();
        writer.writeProperty();
        writer.writeParking();
        if (scale > 0)
            writer.writeBenchmark(scale);
    } catch (...) {
        database.rollback();
        throw;
    }
    if (!database.commit())
        throw RuntimeError(ErrorNumber::DatabaseError, database.lastError().text());
}

} // namespace quorvale
