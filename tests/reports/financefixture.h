#pragma once

#include "reports/financereportwindow.h"
#include "reportwindowfixture.h"
#include "session/dbconnection.h"
#include "session/sessionvalues.h"
#include "support/fixturedb.h"
#include "ui/flexgrid.h"
#include "ui/msgbox.h"

#include <QComboBox>
#include <QDate>
#include <QLineEdit>
#include <QPointer>
#include <gtest/gtest.h>

#include <ostream>

// Readable texts in failure messages.
[[maybe_unused]] static void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"' << text.toStdString() << '"';
}

namespace quorvale {

// Office 01 "一处" of department D1 with two buildings ("2栋" and "10栋"),
// a car park and its spaces, the fee items of both categories, and a signed-in
// session whose message boxes are recorded and answered OK. Ledger rows are
// added by each test.
class FinanceFixture : public ReportWindowFixture {
  protected:
    void SetUp() override
    {
        signIn(QStringLiteral("李四"), QStringLiteral("财务部"), QStringLiteral("会计"));
        const auto s = [](const char *text) { return QVariant(QString::fromUtf8(text)); };
        db.insertRows(
            QStringLiteral("设置管理处"),
            {QStringLiteral("GYD_DH"), QStringLiteral("GYD_Name"), QStringLiteral("商用物业"),
             QStringLiteral("对应部门代号")},
            {{s("01"), s("一处"), QVariant(), s("D1")}, {s("02"), s("商铺"), 1, s("D1")}});
        db.insertRows(QStringLiteral("SetupSFXM"),
                      {QStringLiteral("DH"), QStringLiteral("XM"), QStringLiteral("收费类别"),
                       QStringLiteral("终止日期")},
                      {{s("01"), s("物业费"), s("日常收费"), QVariant()},
                       {s("02"), s("旧水费"), s("日常收费"), QDate(2020, 1, 1)},
                       {s("03"), s("电梯费"), s("日常收费"), QVariant()},
                       {s("11"), s("停车费"), s("停车收费"), QVariant()}});
        db.insertRows(QStringLiteral("楼表"),
                      {QStringLiteral("L_ID"), QStringLiteral("管理处"), QStringLiteral("地址1"),
                       QStringLiteral("字1")},
                      {{10, s("01"), s("10"), s("栋")}, {2, s("01"), s("2"), s("栋")}});
        db.insertRows(QStringLiteral("室表"),
                      {QStringLiteral("S_ID"), QStringLiteral("L_ID"), QStringLiteral("室")},
                      {{101, 2, s("101")}, {102, 2, s("102")}, {1001, 10, s("1001")}});
        db.insertRows(QStringLiteral("业主表"),
                      {QStringLiteral("ZH_ID"), QStringLiteral("S_ID"), QStringLiteral("姓名"),
                       QStringLiteral("说明")},
                      {{1, 101, s("王五"), s("新进户")},
                       {2, 102, s("赵六"), s("迁出户")},
                       {3, 1001, s("钱七"), s("新进户")}});
        db.insert(QStringLiteral("FWXZK"),
                  {{QStringLiteral("FWXZ_dh"), s("Z")}, {QStringLiteral("FWXZ_xz"), s("住宅")}});
        db.insertRows(
            QStringLiteral("车库名"),
            {QStringLiteral("管理处"), QStringLiteral("车库编号"), QStringLiteral("车库名")},
            {{s("01"), s("G1"), s("地下车库")}, {s("01"), s("G2"), QVariant()}});
        db.insert(QStringLiteral("车位申请登记表"), {{QStringLiteral("登记ID"), 500},
                                                     {QStringLiteral("管理处"), s("01")},
                                                     {QStringLiteral("车库编号"), s("G1")},
                                                     {QStringLiteral("车位编号"), s("A-01")}});
        db.insertRows(QStringLiteral("车位说明表"),
                      {QStringLiteral("ID"), QStringLiteral("管理处"), QStringLiteral("车库编号"),
                       QStringLiteral("车位编号")},
                      {{600, s("01"), s("G1"), s("A-01")}, {601, s("01"), s("G2"), s("B-02")}});
        db.insertRows(QStringLiteral("车位产权"), {QStringLiteral("ID"), QStringLiteral("车位ID")},
                      {{700, 600}, {701, 601}});
    }

    // One ledger row; owner, rental and owned space as given (0 for none).
    void ledger(int id, int account, int rental, int owned, const char *month, const char *fee,
                const QVariant &amount, const QVariant &received = {},
                const QVariant &nature = QStringLiteral("Z"), const QVariant &invoice = {},
                const QVariant &method = {})
    {
        const auto orNull = [](int v) { return v ? QVariant(v) : QVariant(); };
        db.insert(QStringLiteral("WYZJ"), {{QStringLiteral("ZJ_ID"), id},
                                           {QStringLiteral("zh_ID"), orNull(account)},
                                           {QStringLiteral("DJ_ID"), orNull(rental)},
                                           {QStringLiteral("cw_id"), orNull(owned)},
                                           {QStringLiteral("FWXZ_DH"), nature},
                                           {QStringLiteral("ZJ_CNY"), QString::fromUtf8(month)},
                                           {QStringLiteral("ZJ_LX"), QString::fromUtf8(fee)},
                                           {QStringLiteral("ZJ_JE"), amount},
                                           {QStringLiteral("ZJ_SKRQ"), received},
                                           {QStringLiteral("发票号码"), invoice},
                                           {QStringLiteral("收款方式"), method}});
    }

    static QLineEdit *text(ReportWindow *w, const char *name)
    {
        return w->findChild<QLineEdit *>(QString::fromUtf8(name));
    }

    // Runs "统计" for office 01; the finance windows take months from 202402.
    static void computeOffice01(ReportWindow *w)
    {
        choose(w, QStringLiteral("01"));
        if (QLineEdit *month = text(w, "Text1"))
            month->setText(QStringLiteral("202402"));
        w->ReportCommand(ReportWindow::Compute);
    }

    // Column 0 and the billing month's first day (column 6) of every row.
    static QStringList placesAndMonths(const FlexGrid &grid)
    {
        QStringList out;
        for (int r = 1; r < grid.Rows(); ++r)
            out << grid.TextMatrix(r, 0) + QLatin1Char(' ') + grid.TextMatrix(r, 6);
        return out;
    }
};

} // namespace quorvale
