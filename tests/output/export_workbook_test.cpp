#include "export_test_print.h"
#include "output/gridexport.h"
#include "output/headermerge.h"
#include "support/xlsxdump.h"
#include "ui/flexgrid.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>

using namespace quorvale;
using quorvale::testing::dumpWorkbook;
using quorvale::testing::sheetOf;

namespace {

// 24 columns "列0".."列23"; each data row holds the same phone number in
// columns 3, 15 and 22 and "r<row>c<col>" elsewhere.
void fillReport(FlexGrid &grid, int dataRows)
{
    QStringList headers;
    for (int c = 0; c < 24; ++c)
        headers << QStringLiteral("列%1").arg(c);
    grid.setRows(1);
    grid.setFormatString(headers.join(QLatin1Char('|')));
    for (int c = 0; c < 24; ++c)
        grid.setColWidth(c, 1000 + 10 * c);
    QVector<QStringList> rows;
    for (int r = 1; r <= dataRows; ++r) {
        QStringList cells;
        for (int c = 0; c < 24; ++c)
            cells << (c == 3 || c == 15 || c == 22 ? "0755123"
                                                   : QStringLiteral("r%1c%2").arg(r).arg(c));
        rows.append(cells);
    }
    grid.appendRows(rows);
}

const QJsonObject cell(const QJsonObject &sheet, const QString &ref)
{
    return sheet["cells"][ref].toObject();
}

// The width Excel shows for a stored column width: whole pixels of the
// default font's 7-pixel digits, the stored value adding 5 pixels of padding.
double shownWidth(double stored)
{
    return std::round(stored * 7 - 5) / 7;
}

QVector<int> allColumnsBut(int skipped)
{
    QVector<int> chosen;
    for (int c = 0; c < 24; ++c)
        if (c != skipped)
            chosen << c;
    return chosen;
}

} // namespace

// Column 1 is left out, so source column c lands in sheet column c (1-based = c).
TEST(GridExport, WritesChosenColumnsWithWidthsFontsBordersAndTextRule)
{
    struct Case {
        ExportVariant variant;
        const char *textRef;   // phone column written as text
        const char *numberRef; // the same phone elsewhere, a number
    } cases[] = {
        {ExportVariant::Customer, "V2", "O2"},
        {ExportVariant::Finance, "O2", "V2"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(int(c.variant));
        QTemporaryDir dir;
        const QString path = dir.filePath("out.xlsx");
        FlexGrid grid;
        fillReport(grid, 3);
        grid.setTextMatrix(2, 22, "  ");
        grid.setTextMatrix(2, 15, "  ");
        writeTableToWorkbook(grid.table(), allColumnsBut(1), {c.variant, path, "房产", {}});

        const QJsonObject dump = dumpWorkbook(path);
        EXPECT_EQ(dump["sheets"].toArray(), QJsonArray({"Sheet1", "房产"}));
        const QJsonObject sheet = sheetOf(dump, "房产");
        EXPECT_EQ(cell(sheet, "A1")["value"], "列0");
        EXPECT_EQ(cell(sheet, "B1")["value"], "列2");
        EXPECT_EQ(cell(sheet, "W4")["value"], "r3c23");
        EXPECT_EQ(cell(sheet, c.textRef)["value"], "0755123");
        EXPECT_EQ(cell(sheet, c.textRef)["quotePrefix"], true);
        EXPECT_EQ(cell(sheet, c.numberRef)["value"], 755123);
        EXPECT_EQ(cell(sheet, "C2")["value"], 755123);
        // Blank phone texts are written as they are, not forced to text.
        EXPECT_FALSE(
            cell(sheet, QString::fromLatin1(c.textRef).replace('2', '3'))["quotePrefix"].toBool());

        const QJsonObject widths = sheet["widths"].toObject();
        const std::pair<const char *, double> expectedWidths[] = {
            {"A", 10.0}, {"B", 10.2}, {"W", 12.3}};
        for (const auto &[column, width] : expectedWidths)
            EXPECT_NEAR(shownWidth(widths[QString::fromLatin1(column)].toDouble()), width, 0.5 / 7)
                << column;

        EXPECT_EQ(cell(sheet, "A1")["size"], 14);
        EXPECT_EQ(cell(sheet, "A1")["h"], "center");
        for (const char *ref : {"A2", "W3", "A4"})
            EXPECT_EQ(cell(sheet, ref)["size"], 10.5) << ref;
        const QJsonArray thin = {"thin", "thin", "thin", "thin"};
        EXPECT_EQ(cell(sheet, "A1")["border"], thin);
        EXPECT_EQ(cell(sheet, "W4")["border"], thin);
        EXPECT_TRUE(cell(sheet, "X1").isEmpty());
        EXPECT_TRUE(cell(sheet, "A5").isEmpty());
    }
}

TEST(GridExport, RewritesAnExistingSheetInPlaceOrAppendsANewOne)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("book.xlsx");
    quorvale::testing::makeWorkbookFixture(path);
    const QJsonObject before = dumpWorkbook(path);
    FlexGrid grid;
    fillReport(grid, 2);

    writeTableToWorkbook(grid.table(), {0, 2}, {ExportVariant::Customer, path, "报表", {}});
    QJsonObject after = dumpWorkbook(path);
    EXPECT_EQ(after["sheets"], before["sheets"]);
    const QJsonObject report = sheetOf(after, "报表");
    EXPECT_EQ(cell(report, "B2")["value"], "r1c2");
    EXPECT_EQ(cell(report, "H20")["value"], "keep me");
    // Outside the written block only the row formats reach existing cells.
    EXPECT_EQ(cell(report, "Z1")["size"], 14);
    EXPECT_EQ(cell(report, "C3")["size"], 10);
    EXPECT_EQ(cell(report, "B3")["size"], 10.5);
    for (const char *part : {"xl/worksheets/sheet1.xml", "xl/worksheets/sheet2.xml"})
        EXPECT_EQ(after["entries"][QString::fromLatin1(part)],
                  before["entries"][QString::fromLatin1(part)])
            << part;

    writeTableToWorkbook(grid.table(), {0, 2}, {ExportVariant::Customer, path, "新表", {}});
    after = dumpWorkbook(path);
    const QJsonArray sheets = after["sheets"].toArray();
    ASSERT_EQ(sheets.size(), 4);
    EXPECT_EQ(sheets.last(), "新表");
    EXPECT_EQ(cell(sheetOf(after, "新表"), "A3")["value"], "r2c0");
}

TEST(GridExport, TwoRowHeaderIsMerged)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("two.xlsx");
    FlexGrid grid;
    grid.setFormatString("编号|欠费|欠费|欠费|备注");
    grid.setRows(3);
    grid.setFixedRows(2);
    const QStringList lower = {"编号", "物业费", "水费", "电费", "说明"};
    for (int c = 0; c < 5; ++c)
        grid.setTextMatrix(1, c, lower[c]);
    // Exporting again over the merged header must give the same sheet.
    for (int pass = 0; pass < 2; ++pass)
        writeTableToWorkbook(grid.table(), {0, 1, 2, 3, 4}, {ExportVariant::Finance, path, "欠费", {}});
    const QJsonObject sheet = sheetOf(dumpWorkbook(path), "欠费");
    EXPECT_EQ(sheet["merges"], QJsonArray({"A1:A2", "B1:D1"}));
    EXPECT_EQ(cell(sheet, "B1")["value"], "欠费");
    EXPECT_EQ(cell(sheet, "C2")["value"], "水费");
}

TEST(HeaderMerges, RunsOfEqualUpperTextsAndSingleHeaders)
{
    struct Case {
        QStringList upper, lower;
        QVector<HeaderMerge> merges;
    } cases[] = {
        {{"A", "A ", "B", "B"}, {"a", "b", "c", "d"}, {{1, 1, 1, 2}, {1, 3, 1, 4}}},
        {{"A", "A", "A"}, {"A", "x", "y"}, {{1, 1, 1, 3}}},
        {{"X", "", "", "Y", "X"}, {" X", "", "", "y", "X"}, {{1, 1, 2, 1}, {1, 5, 2, 5}}},
    };
    for (const Case &c : cases)
        EXPECT_TRUE(headerMerges(c.upper, c.lower) == c.merges) << c.upper.join(',').toStdString();
}
