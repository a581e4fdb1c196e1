#include "financefixture.h"

#include "reports/financereport.h"
#include "reports/windows/calendarpopup.h"
#include "reports/windows/frm收款日报表.h"
#include "reports/windows/frm财务数据欠收表房产.h"
#include "reports/windows/frm财务数据欠收表车位.h"
#include "reports/windows/frm财务数据预收表房产.h"
#include "reports/windows/frm财务数据预收表车位.h"
#include "reports/windows/frm车位基础表.h"

#include "output/gridprint.h"
#include "output/windows/exportwindow.h"
#include "support/chineseapplication.h"
#include "support/pdfprinter.h"
#include "support/xlsxdump.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QDateEdit>
#include <QLabel>
#include <QLayout>
#include <QPageSetupDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <cmath>
#include <functional>

namespace quorvale {
namespace {

void setMonths(ReportWindow *w, const char *first, const char *last)
{
    w->findChildren<QRadioButton *>("Option1")[1]->setChecked(true);
    w->findChild<QLineEdit *>("Text3")->setText(QString::fromUtf8(first));
    w->findChild<QLineEdit *>("Text4")->setText(QString::fromUtf8(last));
}

void setPicker(ReportWindow *w, const char *name, const QDate &date)
{
    w->findChild<QDateEdit *>(QString::fromUtf8(name))->setDate(date);
}

using FinanceReports = FinanceFixture;

TEST_F(FinanceReports, PropertyArrearsListOutstandingMonthsUpToTheChosenOneAfterTheCutOff)
{
    ledger(1, 1, 0, 0, "202401", "01", 100);
    ledger(2, 1, 0, 0, "202402", "01", QVariant());
    ledger(3, 1, 0, 0, "202403", "01", 90, QDate(2024, 3, 31)); // received on the cut-off
    ledger(4, 1, 0, 0, "202403", "03", 30, QDate(2024, 4, 1));  // received a day later
    ledger(5, 1, 0, 0, "202404", "01", 100);                    // after the month
    ledger(6, 3, 0, 0, "202312", "01", 100, {}, "X");           // unknown house nature
    ledger(7, 2, 0, 0, "202401", "01", 100);                    // unit without "新进户"
    ledger(8, 1, 0, 0, "202401", "02", 100);                    // withdrawn fee item
    ledger(9, 1, 500, 0, "202401", "11", 100);                  // parking fee

    auto *w = open<frm财务数据欠收表房产>();
    text(w, "Text2")->setText("2024/03/31");
    computeOffice01(w, "202403");

    const FlexGrid &grid = *w->grid();
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_EQ(placesAndMonths(grid),
              QStringList({"一处->2栋->101 2024-01-01", "一处->2栋->101 2024-02-01",
                           "一处->2栋->101 2024-03-01", "一处->10栋->1001 2023-12-01"}));
    const QList<QStringList> all = rows(grid);
    EXPECT_EQ(all[1].join(QLatin1Char('|')),
              "一处->2栋->101|业主|住宅|物业费|物业费|0|2024-02-01|2024-02-29|2024-02-01|0|||||");
    EXPECT_EQ(all[3][2], QString());

    setMonths(w, "202402", "202403");
    text(w, "Text2")->setText("2024-03-30"); // the calendar's form; now row 3 is outstanding
    w->ReportCommand(ReportWindow::Compute);
    EXPECT_EQ(placesAndMonths(grid),
              QStringList({"一处->2栋->101 2024-02-01", "一处->2栋->101 2024-03-01",
                           "一处->2栋->101 2024-03-01"}));
}

TEST_F(FinanceReports, ParkingArrearsListNeverReceivedFeesOfRentedThenOwnedSpaces)
{
    ledger(20, 0, 500, 700, "202402", "11", 80);                  // rented and owned
    ledger(21, 0, 500, 0, "202403", "11", 80, QDate(2024, 4, 1)); // received after the cut-off
    ledger(22, 0, 0, 701, "202401", "11", QVariant());            // car park without a name
    ledger(23, 1, 0, 0, "202401", "01", 100);                     // property fee

    auto *w = open<frm财务数据欠收表车位>();
    text(w, "Text2")->setText("2024/03/31");
    computeOffice01(w, "202403");

    const FlexGrid &grid = *w->grid();
    EXPECT_EQ(placesAndMonths(grid),
              QStringList({"一处->地下车库->A-01 2024-02-01", "一处->地下车库->A-01 2024-02-01",
                           "一处->->B-02 2024-01-01"}));
    EXPECT_EQ(rows(grid)[2].join(QLatin1Char('|')),
              "一处->->B-02|业主||停车费|停车费|0|2024-01-01|2024-01-31|2024-01-01|0||||||");
}

TEST_F(FinanceReports, ParkingAdvanceReceiptsByMonthModeAndReceiptMode)
{
    ledger(40, 0, 500, 0, "202403", "11", 80, QDate(2024, 3, 15), {}, "F1", "现金");
    ledger(41, 0, 500, 0, "202402", "11", 80, QDate(2024, 2, 1)); // the chosen month itself
    ledger(42, 0, 0, 701, "202404", "11", QVariant(), QDate(2024, 3, 31));
    ledger(43, 0, 0, 701, "202405", "11", 80, QDate(2024, 4, 1)); // after the cut-off
    ledger(44, 0, 500, 700, "202406", "11", 10, QDate(2024, 1, 5));
    ledger(45, 0, 500, 0, "202407", "11", 10); // not received

    auto *w = open<frm财务数据预收表车位>();
    setPicker(w, "DTPicker3", QDate(2024, 3, 31));
    computeOffice01(w, "202402");

    const FlexGrid &grid = *w->grid();
    EXPECT_EQ(placesAndMonths(grid),
              QStringList({"一处->地下车库->A-01 2024-03-01", "一处->地下车库->A-01 2024-06-01",
                           "一处->地下车库->A-01 2024-06-01", "一处->->B-02 2024-04-01"}));
    const QList<QStringList> all = rows(grid);
    EXPECT_EQ(all[0].join(QLatin1Char('|')),
              "一处->地下车库->A-01|业主||停车费|停车费|80|2024-03-01|2024-03-31|2024-03-01|80|||"
              "80|2024-03-15|现金|F1||||");
    EXPECT_EQ(all[3][5] + all[3][9] + all[3][12], "000");

    const auto enabled = [w](const char *name) {
        return w->findChild<QDateEdit *>(QString::fromUtf8(name))->isEnabled();
    };
    EXPECT_TRUE(!enabled("DTPicker1") && !enabled("DTPicker2") && enabled("DTPicker3"));
    setMonths(w, "202402", "202405");
    w->findChildren<QRadioButton *>("Option2")[1]->click();
    EXPECT_TRUE(enabled("DTPicker1") && enabled("DTPicker2") && !enabled("DTPicker3"));
    setPicker(w, "DTPicker1", QDate(2024, 2, 1));
    setPicker(w, "DTPicker2", QDate(2024, 4, 1));
    w->ReportCommand(ReportWindow::Compute);
    EXPECT_EQ(placesAndMonths(grid),
              QStringList({"一处->地下车库->A-01 2024-02-01", "一处->地下车库->A-01 2024-03-01",
                           "一处->->B-02 2024-04-01", "一处->->B-02 2024-05-01"}));
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(FinanceReports, PropertyAdvanceReceiptsAndTheLastRowMadeCurrent)
{
    ledger(30, 1, 0, 0, "202404", "01", 50, QDate(2024, 3, 15), "Z", "F9", "转账");
    ledger(31, 1, 0, 0, "202403", "01", 60, QDate(2024, 3, 10));
    ledger(32, 1, 0, 0, "202405", "01", 70, QDate(2024, 4, 2));
    ledger(33, 3, 0, 0, "202406", "01", QVariant(), QDate(2024, 3, 1), QVariant());
    ledger(34, 2, 0, 0, "202404", "01", 50, QDate(2024, 3, 15)); // unit without "新进户"

    auto *w = open<frm财务数据预收表房产>();
    setPicker(w, "DTPicker3", QDate(2024, 3, 31));
    computeOffice01(w, "202403");

    const FlexGrid &grid = *w->grid();
    EXPECT_EQ(placesAndMonths(grid),
              QStringList({"一处->2栋->101 2024-04-01", "一处->10栋->1001 2024-06-01"}));
    EXPECT_EQ(rows(grid)[0].join(QLatin1Char('|')),
              "一处->2栋->101|业主|住宅|物业费|物业费|50|2024-04-01|2024-04-30|2024-04-01|50|||50|"
              "2024-03-15|转账|F9||||");
    EXPECT_EQ(rows(grid)[1][2], QString());
    EXPECT_EQ(grid.Row(), grid.Rows() - 1);
    EXPECT_TRUE(grid.Redraw());

    setMonths(w, "202403", "202405");
    w->findChildren<QRadioButton *>("Option2")[1]->click();
    setPicker(w, "DTPicker1", QDate(2024, 3, 10));
    setPicker(w, "DTPicker2", QDate(2024, 4, 2));
    w->ReportCommand(ReportWindow::Compute);
    EXPECT_EQ(placesAndMonths(grid),
              QStringList({"一处->2栋->101 2024-03-01", "一处->2栋->101 2024-04-01",
                           "一处->2栋->101 2024-05-01"}));
}

// Which input is refused, and with what box, is the check's own rule
// (FinanceCheck); here only what the window does with a refusal.
TEST_F(FinanceReports, RefusalShowsItsBoxFocusesItsBoxAndKeepsTheGrid)
{
    ledger(1, 1, 0, 0, "202401", "01", 100);
    ledger(40, 0, 500, 0, "202403", "11", 80, QDate(2024, 3, 15));
    const struct {
        ReportWindow *window;
        std::function<void(ReportWindow *)> input;
        QString message, title;
        int style;
        const char *focus;
    } cases[] = {
        {open<frm财务数据欠收表房产>(), [](ReportWindow *w) { setMonths(w, "202404", "202400"); },
         "请输入统计年月！", "提醒", 0, "Text4"},
        {open<frm财务数据欠收表房产>(),
         [](ReportWindow *w) { text(w, "Text2")->setText("2024/13/01"); },
         "日期格式不正确，请重新输入日期！", programTitle(), 0, "Text2"},
        {open<frm财务数据预收表车位>(),
         [](ReportWindow *w) {
             setPicker(w, "DTPicker1", QDate(2024, 5, 1));
             setPicker(w, "DTPicker2", QDate(2024, 4, 1));
         },
         "收款日期起始日期不能大于终止日期，请重新选择！", exeName(), 80, nullptr},
    };
    for (const auto &c : cases) {
        ReportWindow *w = c.window;
        SCOPED_TRACE(c.message.toStdString());
        w->show();
        QApplication::setActiveWindow(w);
        ASSERT_TRUE(QTest::qWaitForWindowActive(w));
        computeOffice01(w);
        const QList<QStringList> before = rows(*w->grid());
        ASSERT_FALSE(before.isEmpty());
        boxes.clear();
        c.input(w);
        w->combo1()->setFocus();
        w->ReportCommand(ReportWindow::Compute);
        ASSERT_EQ(boxes.size(), 1);
        EXPECT_EQ(boxes[0].prompt, c.message);
        EXPECT_EQ(boxes[0].title, c.title);
        EXPECT_EQ(boxes[0].style, c.style);
        if (c.focus) {
            EXPECT_EQ(QApplication::focusWidget(), text(w, c.focus));
        }
        EXPECT_EQ(rows(*w->grid()), before);
    }
}

// The month bar as it reads, left to right, and the day-name row.
QString calendarHeader(const QCalendarWidget &calendar)
{
    auto *year = calendar.findChild<QToolButton *>("qt_calendar_yearbutton");
    auto *month = calendar.findChild<QToolButton *>("qt_calendar_monthbutton");
    const QLayout *bar = month->parentWidget()->layout();
    return bar->indexOf(year) < bar->indexOf(month) ? year->text() + month->text()
                                                    : month->text() + year->text();
}

QStringList dayNames(const QCalendarWidget &calendar)
{
    const QAbstractItemModel *model = calendar.findChild<QTableView *>()->model();
    QStringList names;
    for (int c = 0; c < model->columnCount(); ++c)
        names << model->data(model->index(0, c)).toString();
    return names;
}

// The month picker and the date pickers' calendars read as a Chinese clerk reads dates.
TEST_F(FinanceReports, CalendarsAreHeadedYearThenMonthInChinese)
{
    testing::ChineseApplication chinese;
    ReportWindow *w = open<frm财务数据预收表房产>();
    QList<QCalendarWidget *> calendars = {w->findChild<QCalendarWidget *>("MonthView1")};
    for (const char *picker : {"DTPicker1", "DTPicker2", "DTPicker3"})
        calendars << w->findChild<QDateEdit *>(picker)->calendarWidget();
    for (QCalendarWidget *calendar : calendars) {
        ASSERT_NE(calendar, nullptr);
        calendar->setSelectedDate(QDate(2026, 11, 23));
        EXPECT_EQ(calendarHeader(*calendar), "2026年11月");
        EXPECT_TRUE(dayNames(*calendar).contains("周一")) << dayNames(*calendar).join(' ').toStdString();
        calendar->setCurrentPage(2027, 2);
        EXPECT_EQ(calendarHeader(*calendar), "2027年2月");
    }
}

// A long print says how far it has got, page by page, in the status bar.
TEST_F(FinanceReports, PrintShowsPagesDoneOfPagesInTheStatusBar)
{
    ReportWindow *w = open<frm财务数据欠收表房产>();
    choose(w, "01");
    QVector<QStringList> rows(300, QStringList{"1", "王五", "物业费"});
    w->grid()->appendRows(rows);
    const auto *panel = w->findChild<QLabel *>("ProgressPanel");
    QStringList seen;
    int pages = 0;
    QTemporaryDir dir;
    printInto(dir.filePath("print.pdf"));
    QObject::connect(w, &ReportWindow::pagePrinted, w, [&](int, int pageCount) {
        seen << panel->text();
        pages = pageCount;
    });
    w->ReportCommand(ReportWindow::Print);
    ASSERT_GT(pages, 2);
    QStringList expected;
    for (int page = 1; page <= pages; ++page)
        expected << QStringLiteral("已打印 %1/%2 页").arg(page).arg(pages);
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(panel->text(), expected.last());
}

// Yes to the paper question opens the page setup, whose choice is the paper
// of every later print; a print that did not happen leaves no page count.
TEST_F(FinanceReports, YesToThePaperQuestionOpensThePageSetup)
{
    ReportWindow *w = open<frm财务数据欠收表房产>();
    choose(w, "01");
    w->grid()->appendRows(QVector<QStringList>(30, QStringList{"1", "王五", "物业费"}));
    // Wider than A4 upright, narrower than A4 lying.
    for (int c = 0; c < w->grid()->Cols(); ++c)
        w->grid()->setColWidth(c, 13500 / w->grid()->Cols());
    auto *panel = w->findChild<QLabel *>("ProgressPanel");
    panel->setText("共 30 行");
    desktop->answerBox = [this](const MsgBoxCall &call) {
        boxes.append(call);
        return vb::Yes;
    };
    QStringList opened;
    QTimer watch;
    watch.setInterval(10);
    QObject::connect(&watch, &QTimer::timeout, [&] {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *setup = qobject_cast<QPageSetupDialog *>(modal)) {
            opened << "page setup";
            setup->findChild<QRadioButton *>("landscape")->click();
            setup->accept();
        } else if (auto *preview = qobject_cast<QPrintPreviewDialog *>(modal)) {
            opened << (preview->printer()->pageLayout().orientation() == QPageLayout::Landscape
                           ? "preview lying"
                           : "preview upright");
            preview->reject();
        }
    });
    watch.start();
    w->ReportCommand(ReportWindow::Print);
    EXPECT_EQ(opened, QStringList{"page setup"});
    w->ReportCommand(ReportWindow::Print);
    EXPECT_EQ(opened, QStringList({"page setup", "preview lying"}));
    ASSERT_EQ(boxes.size(), 1) << "the paper fits after the setup";
    EXPECT_EQ(boxes[0].prompt, paperTooNarrowQuestion());
    EXPECT_EQ(panel->text(), "共 30 行");
}

// Tab walks each control in the order the window lays it out, left to right
// and top to bottom, and Enter presses the focused button.
TEST_F(FinanceReports, TabFollowsTheLayoutAndEnterPressesTheFocusedButton)
{
    const auto stopName = [](QWidget *w) {
        if (auto *button = qobject_cast<QAbstractButton *>(w))
            return w->objectName() + u' ' + button->text();
        return w->objectName();
    };
    const struct {
        std::function<ReportWindow *()> open;
        QStringList stops;
    } cases[] = {
        {[this] { return open<frm财务数据欠收表房产>(); },
         {"MSHFlexGrid1", "Combo1", "Option1 应收截止年月", "Text1", "Command9 …", "Combo3", "Text2",
          // The unchecked option of a pair is reached with the arrow keys.
          "Command4 …", "Text3", "Command3 …", "Text4", "Command2 …", "Command1 统计",
          "Command1 输出EXCEL", "Command1 退出", "Command1 打印"}},
    };
    for (const auto &c : cases) {
        ReportWindow *w = c.open();
        w->show();
        QApplication::setActiveWindow(w);
        QWidget *first = w->findChild<FlexGrid *>();
        first->setFocus();
        QStringList stops;
        for (QWidget *f = first; stops.size() < c.stops.size() + 1;) {
            stops << stopName(f);
            QTest::keyClick(f, Qt::Key_Tab);
            f = QApplication::focusWidget();
            if (!f || f == first)
                break;
        }
        EXPECT_EQ(stops.join(" | ").toStdString(), c.stops.join(" | ").toStdString());

        choose(w, "01");
        auto *panel = w->findChild<QLabel *>("ProgressPanel");
        panel->clear();
        QPushButton *compute = w->findChildren<QPushButton *>("Command1").value(0);
        compute->setFocus();
        QTest::keyClick(compute, Qt::Key_Return);
        EXPECT_TRUE(panel->text().startsWith("共")) << panel->text().toStdString();
    }
}

TEST_F(FinanceReports, FeeItemsOfTheWindowsCategoryFillCombo3AndTheQuery)
{
    auto *property = open<frm财务数据欠收表房产>();
    auto *parking = open<frm财务数据预收表车位>();
    QComboBox *combo3 = property->findChild<QComboBox *>("Combo3");
    EXPECT_EQ(combo3->count(), 2);
    EXPECT_EQ(combo3->itemText(1), "03 电梯费");
    EXPECT_EQ(property->feeCodeList().text(), "'01','03'");
    EXPECT_EQ(parking->feeCodeList().text(), "'11'");

    // Without a current item of its category the query stops without a word.
    db.execute("UPDATE SetupSFXM SET 终止日期 = '2024-01-01'");
    auto *empty = open<frm财务数据欠收表车位>();
    ledger(20, 0, 500, 0, "202402", "11", 80);
    choose(empty, "01");
    const int rowsBefore = empty->grid()->Rows();
    empty->ReportCommand(ReportWindow::Compute);
    EXPECT_EQ(empty->feeCodeList().text(), QString());
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_EQ(empty->grid()->Rows(), rowsBefore);
}

TEST_F(FinanceReports, CalendarOpensUnderItsBoxTogglesAndWritesTheBoxOfItsTag)
{
    auto *arrears = open<frm财务数据欠收表房产>();
    arrears->resize(1200, 700);
    CalendarPopup *calendar = arrears->picture6();
    QCalendarWidget *monthView = calendar->monthView();
    EXPECT_EQ(monthView->selectedDate(), QDate::currentDate());

    arrears->findChild<QPushButton *>("Command4")->click();
    EXPECT_TRUE(calendar->isVisibleTo(arrears));
    EXPECT_EQ(calendar->tag(), "2");
    monthView->setSelectedDate(QDate(2024, 2, 29));
    Q_EMIT monthView->clicked(QDate(2024, 2, 29));
    EXPECT_EQ(text(arrears, "Text2")->text(), "2024-02-29");
    EXPECT_FALSE(calendar->isVisibleTo(arrears));

    const QString before = text(arrears, "Text3")->text();
    arrears->findChild<QPushButton *>("Command3")->click();
    arrears->findChild<QPushButton *>("Command3")->click();
    EXPECT_FALSE(calendar->isVisibleTo(arrears)); // a second click hides it, writing nothing
    EXPECT_EQ(text(arrears, "Text3")->text(), before);

    auto *advance = open<frm财务数据预收表房产>();
    advance->findChild<QPushButton *>("Command2")->click();
    Q_EMIT advance->picture6()->monthView()->clicked(QDate(2023, 11, 5));
    EXPECT_EQ(text(advance, "Text4")->text(), "202311");
    EXPECT_EQ(advance->findChild<QPushButton *>("Command4"), nullptr);
}

// Every window hands its grid to its export window, whose workbook keeps
// source column 22 (frmToExcel) or 15 (frmToExcelnew) as text, and prints
// the same title with its own date range. A statement that fails keeps the
// rows shown, and a commercial office runs nothing.
TEST_F(FinanceReports, EachWindowExportsPrintsAndKeepsItsRows)
{
    db.execute("UPDATE 业主表 SET 移动电话 = '013800138000' WHERE ZH_ID = 1");
    ledger(1, 1, 0, 0, "202401", "01", 100);
    ledger(20, 0, 500, 0, "202402", "11", 80);
    ledger(30, 1, 0, 0, "202404", "01", 50, QDate(2024, 3, 15));
    ledger(40, 0, 500, 0, "202403", "11", 80, QDate(2024, 3, 15), {}, "007");
    const auto customer = ExportWindow::Variant::Customer;
    const auto finance = ExportWindow::Variant::Finance;
    const struct {
        std::function<ReportWindow *()> open;
        ExportWindow::Variant variant;
        const char *exporter, *title, *sheet;
        bool pickerDates;
        const char *textCell = nullptr, *text = nullptr, *numberCell = nullptr;
        int number = 0;
    } cases[] = {
        {[this] { return open<frm收款日报表>(); }, customer, "frmToExcel", "(一处) 房产数据",
         "房产数据模板", false, "W2", "013800138000", "K2", 101},
        {[this] { return open<frm车位基础表>(); }, customer, "frmToExcel", "(一处) 车位数据模板",
         "车位数据模板", false},
        {[this] { return open<frm财务数据欠收表房产>(); }, finance, "frmToExcelnew",
         "(一处) 财务房产数据欠收表", "财务房产数据欠收表", false},
        {[this] { return open<frm财务数据欠收表车位>(); }, finance, "frmToExcelnew",
         "(一处) 财务车位数据欠收表", "财务车位数据欠收表", false},
        {[this] { return open<frm财务数据预收表车位>(); }, finance, "frmToExcelnew",
         "(一处) 车位数据预收表", "财务车位数据预收表", true, "P2", "007", "F2", 80},
        {[this] { return open<frm财务数据预收表房产>(); }, finance, "frmToExcelnew",
         "(一处) 财务房产数据预收表", "财务房产数据预收表", true},
    };
    QTemporaryDir dir;
    const QString printed = dir.filePath("printed.pdf");
    printInto(printed);
    desktop->today = [] { return QDate(2026, 1, 5); };
    const SessionPtr signedIn = session;
    for (const auto &c : cases) {
        // Each window on a connection of its own, which it may lose.
        auto own = std::make_shared<Connection>();
        own->ConnectionString = Connection::embeddedConnectionString(db.path());
        own->Open();
        session = signedIn;
        changeSession([&own](Session &s) { s.DbConn = own; });
        ReportWindow *w = c.open();
        SCOPED_TRACE(w->objectName().toStdString());
        computeOffice01(w); // its commercial mark is Null, which counts as 0
        const QList<QStringList> before = rows(*w->grid());
        ASSERT_FALSE(before.isEmpty());
        w->ReportCommand(ReportWindow::Export);
        ExportWindow *exporter = ExportWindow::shared(c.variant, desktop, nullptr);
        EXPECT_TRUE(exporter->isVisible());
        EXPECT_EQ(exporter->objectName(), QString::fromUtf8(c.exporter));
        EXPECT_EQ(exporter->sourceGrid(), w->grid());
        EXPECT_EQ(exporter->Text1(1)->text(), QString::fromUtf8(c.title));
        EXPECT_EQ(exporter->Text1(2)->text(), QString::fromUtf8(c.sheet));
        EXPECT_EQ(exporter->tagText(), "统计时间:2026年01月05日");
        const QString path = dir.filePath(w->objectName() + ".xlsx");
        exporter->Text1(0)->setText(path);
        exporter->findChild<QAction *>("输出")->trigger();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (c.textCell) {
            const QJsonObject cells =
                testing::dumpWorkbook(path)["data"][QString::fromUtf8(c.sheet)]["cells"].toObject();
            const QJsonObject text = cells[QString::fromLatin1(c.textCell)].toObject();
            EXPECT_EQ(text["value"].toString(), QString::fromUtf8(c.text));
            EXPECT_TRUE(text["quotePrefix"].toBool());
            const QJsonObject number = cells[QString::fromLatin1(c.numberCell)].toObject();
            EXPECT_EQ(number["value"].toInt(-1), c.number);
            EXPECT_FALSE(number["quotePrefix"].toBool());
        }

        if (c.pickerDates) {
            setPicker(w, "DTPicker1", QDate(2024, 1, 2));
            setPicker(w, "DTPicker2", QDate(2024, 3, 4));
        }
        w->ReportCommand(ReportWindow::Print);
        const QString page = testing::pdfText(printed);
        EXPECT_TRUE(page.contains("(一处)收款日报表")) << page.toStdString();
        EXPECT_TRUE(page.contains(c.pickerDates ? "日期范围:2024年01月02日-2024年03月04日"
                                                : "日期范围:2026年01月05日-2026年01月05日"))
            << page.toStdString();

        // A cut-off date the window accepts and the database refuses, or a lost connection.
        if (QLineEdit *cutOff = text(w, "Text2"))
            cutOff->setText("2024年3月31日");
        else
            own->Close();
        w->ReportCommand(ReportWindow::Compute);
        ASSERT_EQ(boxes.size(), 1); // the failure's, none before it
        EXPECT_EQ(boxes[0].style, vb::Information);
        EXPECT_FALSE(boxes[0].title.isEmpty());
        EXPECT_EQ(rows(*w->grid()), before);
        choose(w, "02");
        w->ReportCommand(ReportWindow::Compute);
        EXPECT_EQ(boxes.size(), 1);
        EXPECT_EQ(rows(*w->grid()), before);
        boxes.clear();
    }
}

// The designed rules, one appended row at a time, as the reference.
void rowByRowWidths(FlexGrid &grid, const QList<QStringList> &data, bool newRowCurrent)
{
    for (const QStringList &row : data) {
        grid.setRows(grid.Rows() + 1);
        for (int c = 0; c < row.size(); ++c)
            grid.setTextMatrix(grid.Rows() - 1, c, row[c]);
        if (newRowCurrent)
            grid.setRow(grid.Rows() - 1);
        for (int c = 0; c < grid.Cols(); ++c) {
            const double w = grid.TextWidth(grid.TextMatrix(grid.Row(), c));
            const int margin = newRowCurrent ? 90 : 80;
            if (w + margin > grid.ColWidth(c))
                grid.setColWidth(c, int(std::lround(w + (newRowCurrent ? 90 : 100))));
        }
    }
}

TEST_F(FinanceReports, ChunkedFillGivesTheWidthsOfTheRowByRowRule)
{
    for (int i = 0; i < 9; ++i) {
        const QString wide = QString(i * 7, QLatin1Char('W'));
        ledger(100 + i, i % 2 ? 1 : 3, 500, 700, "202401", "01", 1000 * i, QDate(2024, 1, 1 + i),
               {}, wide, wide + "方式");
        ledger(200 + i, 0, 500, 700, "202401", "11", 10 * i, QDate(2024, 1, 1 + i), {}, wide);
    }
    ReportParams params;
    params.officeCode = "01";
    params.receiptCutOffText = "2023-12-31";
    params.receiptCutOff = QDate(2024, 12, 31);
    params.receiptFrom = params.receiptTo = QDate(2024, 1, 1);

    for (FinanceReportKind kind :
         {FinanceReportKind::PropertyArrears, FinanceReportKind::ParkingAdvance,
          FinanceReportKind::PropertyAdvance}) {
        const bool parking = kind == FinanceReportKind::ParkingAdvance;
        params.feeCodeList = parking ? "'11'" : "'01'";
        params.month = kind == FinanceReportKind::PropertyArrears ? "202401" : "202312";
        FlexGrid reference;
        const TextWidthFn width = reference.textWidthFn();
        ReportTable chunked;
        const ReportDefinition definition = financeReportDefinition(kind);
        prepareReportTable(definition, chunked, width);
        chunked.setFormatString(chunked.formatString(), width); // widths from the heading, as at load
        if (definition.headerAtLoad)
            reference.setRows(1);
        reference.setFormatString(definition.formatString);
        computeReport(definition, db.connection(), params, chunked, width, {}, 2);
        ASSERT_GT(chunked.rows(), 3);
        const bool newRow = kind == FinanceReportKind::PropertyAdvance;
        rowByRowWidths(reference, rows(chunked), newRow);
        for (int c = 0; c < chunked.cols(); ++c)
            EXPECT_EQ(chunked.colWidth(c), reference.ColWidth(c)) << int(kind) << " col " << c;
    }
}

} // namespace
} // namespace quorvale
