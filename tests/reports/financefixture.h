#pragma once

#include "reports/windows/financereportwindow.h"
#include "reportwindowfixture.h"
#include "support/fixturedb.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"

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
        signIn("李四", "财务部", "会计");
        db.insertRows("设置管理处", {"GYD_DH", "GYD_Name", "商用物业", "对应部门代号"},
                      {{"01", "一处", QVariant(), "D1"}, {"02", "商铺", 1, "D1"}});
        db.insertRows("SetupSFXM", {"DH", "XM", "收费类别", "终止日期"},
                      {{"01", "物业费", "日常收费", QVariant()},
                       {"02", "旧水费", "日常收费", QDate(2020, 1, 1)},
                       {"03", "电梯费", "日常收费", QVariant()},
                       {"11", "停车费", "停车收费", QVariant()}});
        db.insertRows("楼表", {"L_ID", "管理处", "地址1", "字1"},
                      {{10, "01", "10", "栋"}, {2, "01", "2", "栋"}});
        db.insertRows("室表", {"S_ID", "L_ID", "室"},
                      {{101, 2, "101"}, {102, 2, "102"}, {1001, 10, "1001"}});
        db.insertRows(
            "业主表", {"ZH_ID", "S_ID", "姓名", "说明"},
            {{1, 101, "王五", "新进户"}, {2, 102, "赵六", "迁出户"}, {3, 1001, "钱七", "新进户"}});
        db.insert("FWXZK", {{"FWXZ_dh", "Z"}, {"FWXZ_xz", "住宅"}});
        db.insertRows("车库名", {"管理处", "车库编号", "车库名"},
                      {{"01", "G1", "地下车库"}, {"01", "G2", QVariant()}});
        db.insert("车位申请登记表",
                  {{"登记ID", 500}, {"管理处", "01"}, {"车库编号", "G1"}, {"车位编号", "A-01"}});
        db.insertRows("车位说明表", {"ID", "管理处", "车库编号", "车位编号"},
                      {{600, "01", "G1", "A-01"}, {601, "01", "G2", "B-02"}});
        db.insertRows("车位产权", {"ID", "车位ID"}, {{700, 600}, {701, 601}});
    }

    // One ledger row; owner, rental and owned space as given (0 for none).
    void ledger(int id, int account, int rental, int owned, const char *month, const char *fee,
                const QVariant &amount, const QVariant &received = {}, const QVariant &nature = "Z",
                const QVariant &invoice = {}, const QVariant &method = {})
    {
        const auto orNull = [](int v) { return v ? QVariant(v) : QVariant(); };
        db.insertRows("WYZJ",
                      {"ZJ_ID", "zh_ID", "DJ_ID", "cw_id", "FWXZ_DH", "ZJ_CNY", "ZJ_LX", "ZJ_JE",
                       "ZJ_SKRQ", "发票号码", "收款方式"},
                      {{id, orNull(account), orNull(rental), orNull(owned), nature, month, fee,
                        amount, received, invoice, method}});
    }

    static QLineEdit *text(ReportWindow *w, const char *name)
    {
        return w->findChild<QLineEdit *>(QString::fromUtf8(name));
    }

    // Runs "统计" for office 01; the finance windows take their month in Text1.
    static void computeOffice01(ReportWindow *w, const QString &month = "202402")
    {
        choose(w, "01");
        if (QLineEdit *box = text(w, "Text1"))
            box->setText(month);
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
