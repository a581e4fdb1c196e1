#include "reportwindowfixture.h"

#include "reports/windows/frm收款日报表.h"
#include "reports/windows/frm车位基础表.h"

#include <QDate>

namespace quorvale {
namespace {

class PropertyCustomers : public CustomerFixture {
  protected:
    void building(int id, const QVariantList &parts, const QString &officeCode = "01")
    {
        FixtureDb::Values v = {{"L_ID", id}, {"管理处", officeCode}};
        const QStringList names = {"地址1", "字1", "地址2", "字2", "地址3", "字3", "地址4", "字4"};
        for (int i = 0; i < parts.size(); ++i)
            v.emplace_back(names[i], parts[i]);
        db.insert("楼表", v);
    }
    void room(int id, int buildingId, const QVariant &number, const QVariant &area = QVariant(),
              const QVariant &kind = QVariant())
    {
        db.insertRows("室表", {"S_ID", "L_ID", "室", "建筑面积", "房屋性质"},
                      {{id, buildingId, number, area, kind}});
    }
    void owner(int account, int roomId, const QString &name, const QString &note,
               const QVariant &movedIn = QVariant(), const QVariant &phone = QVariant())
    {
        db.insertRows("业主表", {"ZH_ID", "S_ID", "姓名", "移动电话", "进户日期", "说明"},
                      {{account, roomId, name, phone, movedIn, note}});
    }
    // Runs "统计" for office 01 and returns the rows keyed by room number.
    QHash<QString, QStringList> compute(frm收款日报表 *w)
    {
        choose(w, "01");
        w->ReportCommand(ReportWindow::Compute);
        QHash<QString, QStringList> byRoom;
        for (const QStringList &row : rows(*w->grid()))
            byRoom.insert(row[10], row);
        return byRoom;
    }
};

TEST_F(PropertyCustomers, FillsRoomsWithFloorsAddressKindAndCurrentOwner)
{
    office("01", "一区");
    db.insert("FWXZK", {{"FWXZ_dh", "Z"}, {"FWXZ_xz", "住宅"}});
    building(1, {"幸福", "小区", QVariant(), QVariant(), "3", "栋"});
    const std::pair<QString, QString> floors[] = {{"12", "1"},     {"101", "1"},  {"1001", "10"},
                                                  {"0502", "5"},   {"B203", "1"}, {"0012", "1"},
                                                  {"30105", "301"}};
    for (int i = 0; i < int(std::size(floors)); ++i)
        room(i + 1, 1, floors[i].first, 85.5, "Z");
    owner(10, 1, "前业主", "迁出");
    owner(11, 2, "前业主", "迁出");
    owner(12, 2, "李四", "新进户", QDate(2024, 3, 1), "13800000000");

    auto *w = open<frm收款日报表>();
    const auto byRoom = compute(w);
    ASSERT_EQ(w->grid()->Rows(), 1 + int(std::size(floors)));
    for (const auto &[number, floor] : floors)
        EXPECT_EQ(byRoom.value(number).value(9), floor) << number.toStdString();

    EXPECT_EQ(filledCells(byRoom.value("101")),
              QStringList({"0=一区", "1=01", "2=一区", "4=幸福小区3栋", "9=1", "10=101", "13=85.5",
                           "15=个人客户", "16=李四", "20=住宅", "22=13800000000", "49=2024-03-01",
                           "52=2024-03-01"}));
    // Room 12 had only a former owner: the row stands without a customer.
    EXPECT_EQ(filledCells(byRoom.value("12")),
              QStringList({"0=一区", "1=01", "2=一区", "4=幸福小区3栋", "9=1", "10=12", "13=85.5",
                           "20=住宅"}));
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(PropertyCustomers, RoomsSortByLengthAndNullRoomLandsOnFloorOne)
{
    office("01", "一区");
    building(1, {"10", "栋"});
    building(2, {"2", "栋"});
    room(1, 1, "101");
    room(2, 2, "1001");
    room(3, 2, "201");
    room(4, 2, QVariant());
    auto *w = open<frm收款日报表>();
    compute(w);
    const auto got = rows(*w->grid());
    ASSERT_EQ(got.size(), 4);
    QStringList order;
    for (const QStringList &row : got)
        order << row[4] + "/" + row[10] + "/" + row[9];
    EXPECT_EQ(order, QStringList({"2栋//1", "2栋/201/2", "2栋/1001/10", "10栋/101/1"}));
}

TEST_F(PropertyCustomers, OverflowingRoomEndsTheComputeKeepingItsHalfFilledRow)
{
    office("01", "一区");
    building(1, {"1", "栋"});
    building(2, {"2", "栋"});
    room(1, 1, "101");
    room(2, 1, "102");
    room(3, 1, "100000");
    room(4, 2, "201");

    auto *w = open<frm收款日报表>();
    compute(w);
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].title, "溢出");
    EXPECT_EQ(boxes[0].style, vb::Information);
    const auto got = rows(*w->grid());
    ASSERT_EQ(got.size(), 3);
    EXPECT_EQ(got[0][10], "101");
    EXPECT_EQ(got[1][10], "102");
    // The failing room's row was added before its cells: filled up to the floor.
    EXPECT_EQ(filledCells(got[2]), QStringList({"0=一区", "1=01", "2=一区", "4=1栋"}));
    // The window stays usable.
    EXPECT_FALSE(w->isBusy());
    EXPECT_TRUE(w->command1(ReportWindow::Compute)->isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

class ParkingCustomers : public CustomerFixture {
  protected:
    void space(int id, const QString &number, const QVariant &owner, const QVariant &charged,
               const QVariant &application)
    {
        db.insertRows("车位说明表",
                      {"ID", "管理处", "车库编号", "车位编号", "产权人", "计费日期", "DJ_ID"},
                      {{id, "01", "G1", number, owner, charged, application}});
    }
    void application(int id, const QString &number, const QString &name, const QDate &date,
                     const QVariant &settled)
    {
        db.insertRows(
            "车位申请登记表",
            {"登记ID", "管理处", "车库编号", "车位编号", "车主姓名", "登记日期", "结账日期"},
            {{id, "01", "G1", number, name, date, settled}});
    }
};

TEST_F(ParkingCustomers, NamesAndDatesComeFromTheOpenApplicationElseTheSpace)
{
    office("01", "一区");
    db.insert("车库名", {{"管理处", "01"}, {"车库编号", "G1"}, {"车库名", "北库"}});
    const QDate charged(2023, 5, 6);
    space(1, "A01", "产权甲", charged, 100); // open application
    application(100, "A01", "申请人", QDate(2024, 1, 2), QVariant());
    space(2, "A02", "产权乙", charged, 200); // application settled
    application(200, "A02", "旧申请人", QDate(2022, 1, 2), QDate(2023, 1, 1));
    space(3, "A03", QVariant(), QVariant(), QVariant());
    space(4, "A04", QVariant(), charged, 300); // application of another space number
    application(300, "B99", "别处", QDate(2024, 2, 2), QVariant());

    auto *w = open<frm车位基础表>();
    choose(w, "01");
    w->ReportCommand(ReportWindow::Compute);
    const auto got = rows(*w->grid());
    ASSERT_EQ(got.size(), 4);
    const QStringList office = {"0=一区", "1=01", "2=一区", "3=G1", "4=北库"};
    const QList<QStringList> expected = {
        {"7=A01", "9=个人客户", "10=申请人", "38=2024-01-02", "42=2024-01-02"},
        {"7=A02", "9=个人客户", "10=产权乙", "38=2023-05-06", "42=2023-05-06"},
        {"7=A03"},
        {"7=A04", "38=2023-05-06", "42=2023-05-06"},
    };
    for (int i = 0; i < expected.size(); ++i)
        EXPECT_EQ(filledCells(got[i]), office + expected[i]) << i;
}

} // namespace
} // namespace quorvale
