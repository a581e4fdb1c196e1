#include "support/files.h"
#include "support/xlsxdump.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"

#include <QDir>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <vector>

using namespace quorvale;
using namespace quorvale::xlsx;
using quorvale::testing::cellsOf;
using quorvale::testing::dumpWorkbook;
using quorvale::testing::saveWorkbook;

namespace {

struct ValueCase {
    const char *input;
    const char *type;  // openpyxl data type: n, s, d; "" = no cell
    QJsonValue value;
    bool isDate;
    bool quotePrefix;
};

} // namespace

TEST(XlsxWorkbook, TypedInputBecomesNumberDateOrText)
{
    const ValueCase cases[] = {
        {"85.5", "n", 85.5, false, false},
        {"-3", "n", -3, false, false},
        {"1e3", "n", 1000, false, false},
        {"0120", "n", 120, false, false},
        {"0755123", "n", 755123, false, false},
        {" 12 ", "n", 12, false, false},
        {".5", "n", 0.5, false, false},
        {"123456789012345678", "s", "123456789012345678", false, false},
        {"'0755123", "s", "0755123", false, true},
        {"'85.5", "s", "85.5", false, true},
        {"2024-03-31", "d", "2024-03-31T00:00:00", true, false},
        {"2024-03-31 10:20:30", "d", "2024-03-31T10:20:30", true, false},
        {"1900-01-01", "d", "1900-01-01T00:00:00", true, false},
        {"2024-02-30", "s", "2024-02-30", false, false},
        {"1,234", "s", "1,234", false, false},
        {"12abc", "s", "12abc", false, false},
        {"1e", "s", "1e", false, false},
        {"a<b&c>\"d\"", "s", "a<b&c>\"d\"", false, false},
        // Written escaped, so Excel and LibreOffice do not read it as "A";
        // openpyxl leaves escapes in inline texts as they are.
        {"_x0041_", "s", "_x005F_x0041_", false, false},
        {"  两端空格 ", "s", "  两端空格 ", false, false},
        {"手机\n号码", "s", "手机\n号码", false, false},
        {"", "", QJsonValue(), false, false},
    };
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("values.xlsx"));
    auto book = Workbook::create(path);
    Worksheet &sheet = book->worksheet(1);
    int row = 1;
    for (const ValueCase &c : cases) {
        sheet.setCellValue(row, 1, QString::fromUtf8(c.input));
        if (row++ == 1) {
            sheet.setCellValue(1, 2, QStringLiteral("overwritten"));
            sheet.setCellValue(1, 2, QString()); // clearing a written cell removes it
        }
    }
    EXPECT_THROW(sheet.setCellValue(1, 3, "x"), xlsx::Error); // rows go top to bottom
    saveWorkbook(*book);

    const QJsonObject cells = cellsOf(dumpWorkbook(path), QStringLiteral("Sheet1"));
    row = 1;
    for (const ValueCase &c : cases) {
        SCOPED_TRACE(c.input);
        const QJsonObject cell = cells[QStringLiteral("A%1").arg(row++)].toObject();
        if (!*c.type) {
            EXPECT_TRUE(cell.isEmpty());
            continue;
        }
        EXPECT_EQ(cell[QStringLiteral("type")].toString(), QString::fromLatin1(c.type));
        EXPECT_EQ(cell[QStringLiteral("value")], c.value);
        EXPECT_EQ(cell[QStringLiteral("isDate")].toBool(), c.isDate);
        EXPECT_EQ(cell[QStringLiteral("quotePrefix")].toBool(), c.quotePrefix);
    }
    EXPECT_FALSE(cells.contains(QStringLiteral("B1")));
}

TEST(XlsxWorkbook, ExportFormattingReadsBack)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("format.xlsx");
    auto book = Workbook::create(path);
    Worksheet &sheet = book->worksheet(1);
    const QStringList header{"户号", "户号", "金额"};
    for (int c = 1; c <= 3; ++c)
        sheet.setColumnWidth(c, 1440 * c / 100.0);
    sheet.setRowHorizontalAlignment(1, Align::HCenter);
    sheet.setRowVerticalAlignment(1, Align::VDistributed);
    sheet.setRangeBorders(1, 1, 3, 3);
    sheet.setRowFontSize(1, 14);
    sheet.setRowFontSize(2, 10);
    sheet.setRangeFontSize(3, 1, 3, 3, 10.5);
    sheet.merge(1, 1, 1, 2);
    for (int c = 1; c <= 3; ++c)
        sheet.setCellValue(1, c, header[c - 1]);
    for (int c = 1; c <= 3; ++c)
        sheet.setCellValue(2, c, QString::number(c));
    for (int c = 1; c <= 3; ++c)
        sheet.setCellValue(3, c, c == 2 ? QString() : "x");
    EXPECT_THROW(sheet.setRowFontSize(4, 10), xlsx::Error); // formats come before cells
    saveWorkbook(*book);

    const QJsonObject dump = dumpWorkbook(path);
    const QJsonObject data = dump["data"]["Sheet1"].toObject();
    const QJsonObject cells = data["cells"].toObject();
    const QJsonObject widths = data["widths"].toObject();
    // Stored widths carry Excel's cell padding: about 0.7 characters, whole pixels.
    EXPECT_NEAR(widths["A"].toDouble(), 14.4 + 0.71, 0.15);
    EXPECT_NEAR(widths["C"].toDouble(), 43.2 + 0.71, 0.15);
    EXPECT_EQ(data["merges"].toArray(), QJsonArray{"A1:B1"});
    EXPECT_EQ(cells["A1"]["value"].toString(), header[0]);
    EXPECT_TRUE(cells["B1"]["value"].isNull());

    const QJsonArray thin{"thin", "thin", "thin", "thin"};
    struct Expect {
        const char *cell;
        double size;
        const char *h;
    } expected[] = {{"A1", 14, "center"}, {"C1", 14, "center"},  {"A2", 10, nullptr},
                    {"C2", 10, nullptr},  {"A3", 10.5, nullptr}, {"B3", 10.5, nullptr}};
    for (const Expect &e : expected) {
        SCOPED_TRACE(e.cell);
        const QJsonObject cell = cells[e.cell].toObject();
        EXPECT_EQ(cell["size"].toDouble(), e.size);
        EXPECT_EQ(cell["border"].toArray(), thin);
        EXPECT_EQ(cell["h"].toString(), e.h ? e.h : "");
    }
    EXPECT_EQ(cells["A1"]["v"].toString(), "distributed");
    EXPECT_FALSE(cells.contains("D1")); // borders stop at the range
}

TEST(XlsxWorkbook, SheetNamesFollowExcelRules)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("names.xlsx");
    auto book = Workbook::create(path);
    EXPECT_EQ(book->worksheetCount(), 1);
    EXPECT_EQ(book->worksheet("sheet1"), &book->worksheet(1));
    Worksheet &added = book->addWorksheetAfterLast();
    const QString bad[] = {
        QString(),         "a[b",   "a]b", "a:b", "a*b", "a?b", "a/b", "a\\b", "'ab", "ab'",
        QString(32, u'x'), "SHEET1"};
    for (const QString &name : bad) {
        SCOPED_TRACE(name.toStdString());
        try {
            added.setName(name);
            ADD_FAILURE() << "accepted";
        } catch (const xlsx::Error &e) {
            EXPECT_FALSE(e.description().isEmpty());
        }
    }
    added.setName(QString(31, u'表'));
    added.setName("财务数据欠收表");
    added.setCellValue(1, 1, "x");
    EXPECT_EQ(book->worksheet("财务数据欠收表"), &added);
    EXPECT_THROW(book->worksheet(3), xlsx::Error);
    saveWorkbook(*book);
    EXPECT_EQ(dumpWorkbook(path)["sheets"].toArray(), (QJsonArray{"Sheet1", "财务数据欠收表"}));
}

TEST(XlsxWorkbook, SheetsFinishedBeforeTheSaveReadBackWhole)
{
    // Random twelve-digit numbers compress badly, so each finished sheet is
    // large enough to wait for the save outside memory; the distinct texts
    // fill more than one block of the string table, and one is as long as a
    // cell may hold.
    QTemporaryDir dir;
    const QString path = dir.filePath("finished.xlsx");
    auto book = Workbook::create(path);
    const int rows = 12000, cols = 4;
    QRandomGenerator random(7);
    std::vector<std::vector<QJsonValue>> values(2);
    for (int s = 0; s < 2; ++s) {
        Worksheet &sheet = s == 0 ? book->worksheet(1) : book->addWorksheetAfterLast();
        for (int r = 1; r <= rows; ++r) {
            for (int c = 1; c < cols; ++c) {
                const qint64 n = random.bounded(Q_INT64_C(100000000000), Q_INT64_C(999999999999));
                values[s].push_back(double(n));
                sheet.setCellValue(r, c, QString::number(n));
            }
            const QString text = r == 5000 ? QString(32767, u'长')
                                           : QStringLiteral("客户 %1").arg(r % 7 ? r * 10 + s : 0);
            values[s].push_back(text);
            sheet.setCellValue(r, cols, text);
        }
        book->finishSheet(sheet);
    }
    saveWorkbook(*book);

    const QJsonObject dump = dumpWorkbook(path);
    for (int s = 0; s < 2; ++s) {
        const QJsonObject cells = cellsOf(dump, s == 0 ? "Sheet1" : "Sheet2");
        ASSERT_EQ(cells.size(), rows * cols);
        int mismatches = 0;
        for (int r = 1; r <= rows; ++r)
            for (int c = 1; c <= cols; ++c) {
                const QString ref = QChar(u'A' + c - 1) + QString::number(r);
                mismatches += cells[ref]["value"] != values[s][size_t((r - 1) * cols + c - 1)];
            }
        EXPECT_EQ(mismatches, 0) << "sheet " << s + 1;
    }
}

// A sheet moved first or taken out leaves every other sheet its own names,
// print area and place as the active sheet.
TEST(XlsxWorkbook, SheetsMovedFirstOrRemovedKeepTheirNames)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("names.xlsx");
    quorvale::testing::makeLocalNamesFixture(path);
    const auto edit = [&](const std::function<void(Workbook &)> &change) {
        auto book = Workbook::open(path);
        change(*book);
        saveWorkbook(*book);
        const QJsonObject dump = dumpWorkbook(path);
        QStringList sheets;
        for (const QJsonValue &s : dump.value("sheets").toArray())
            sheets << s.toString();
        QStringList names;
        for (const QJsonValue &n : dump.value("names").toArray())
            names << n.toString();
        return QStringLiteral("%1 / names %2 / print %3 / active %4")
            .arg(sheets.join(','), names.join(','),
                 dump.value("printAreas").toObject().keys().join(','),
                 dump.value("active").toString())
            .toStdString();
    };
    EXPECT_EQ(edit([](Workbook &book) { book.moveToFront(book.addWorksheet("New")); }),
              "New,A,B,C / names OnA@A / print C / active C");
    EXPECT_EQ(edit([](Workbook &book) { book.moveToFront(*book.worksheet("B")); }),
              "B,New,A,C / names OnA@A / print C / active C");
    EXPECT_EQ(edit([](Workbook &book) { book.removeWorksheet(*book.worksheet("A")); }),
              "B,New,C / names  / print C / active C");
    EXPECT_EQ(edit([](Workbook &book) { book.removeWorksheet(*book.worksheet("C")); }),
              "B,New / names  / print  / active New");
}
