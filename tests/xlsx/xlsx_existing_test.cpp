#include "runtime/runtimeerror.h"
#include "support/files.h"
#include "support/xlsxdump.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

using namespace quorvale;
using namespace quorvale::xlsx;
using namespace quorvale::testing;

using quorvale::testing::entryText;

namespace {

const QString Report = QStringLiteral("报表");

// Formats first: the sheet writes its rows out as they come.
void writeBlock(Worksheet &sheet, int rows, int cols)
{
    sheet.setRangeBorders(1, 1, rows, cols);
    sheet.setRowFontSize(1, 14);
    for (int r = 1; r <= rows; ++r)
        for (int c = 1; c <= cols; ++c)
            sheet.setCellValue(r, c, QStringLiteral("r%1c%2").arg(r).arg(c));
}

// Zip entries whose content differs between two dumps (or exists in one only).
QStringList changedEntries(const QJsonObject &before, const QJsonObject &after)
{
    QStringList changed;
    const QJsonObject a = before["entries"].toObject();
    const QJsonObject b = after["entries"].toObject();
    for (const QString &name : a.keys())
        if (a[name] != b[name])
            changed.append(name);
    for (const QString &name : b.keys())
        if (!a.contains(name))
            changed.append(name);
    changed.sort();
    return changed;
}

} // namespace

TEST(XlsxExisting, RewritesSheetInPlaceKeepingEverythingElse)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("existing.xlsx");
    makeWorkbookFixture(path);
    const QJsonObject before = dumpWorkbook(path);

    auto book = Workbook::open(path);
    ASSERT_EQ(book->worksheetCount(), 3);
    Worksheet *sheet = book->worksheet(Report);
    ASSERT_NE(sheet, nullptr);
    const auto exportBlock = [](Worksheet &target) {
        target.setColumnWidth(2, 20);
        target.merge(1, 1, 1, 2);
        writeBlock(target, 3, 3); // covers the formula in C3
    };
    exportBlock(*sheet);
    saveWorkbook(*book);
    saveWorkbook(*book); // a second save merges into the sheet as opened again

    const QJsonObject after = dumpWorkbook(path);
    EXPECT_EQ(after["sheets"], before["sheets"]);
    const QJsonObject report = sheetOf(after, Report);
    const QJsonObject cells = report["cells"].toObject();
    // Cells outside the block, the row style on row 1 (Rows(1) formats Z1 too) and
    // existing merges stay.
    const std::tuple<const char *, const char *, QJsonValue> expected[] = {
        {"A1", "value", "r1c1"}, {"C3", "value", "r3c3"},
        {"A1", "size", 14},      {"H20", "value", "keep me"},
        {"A30", "value", 42},    {"Z1", "value", "row one far"},
        {"Z1", "size", 14},      {"B1", "value", QJsonValue::Null},
    };
    for (const auto &[ref, field, value] : expected)
        EXPECT_EQ(cells[ref][field], value) << ref << " " << field;
    EXPECT_EQ(report["merges"], QJsonArray({"A1:B1", "J1:K2"}));
    // Excel rejects sheets whose elements are out of schema order.
    const QString xml = entryText(after, "xl/worksheets/sheet3.xml");
    const QStringList order{
        "<dimension",  "<cols>", "<sheetData>", "<mergeCells", "<conditionalFormatting",
        "<pageMargins"};
    for (qsizetype i = 1; i < order.size(); ++i)
        EXPECT_LT(xml.indexOf(order[i - 1]), xml.indexOf(order[i])) << order[i].toStdString();
    EXPECT_EQ(report["conditional"], QJsonArray{"H1:H5"});
    EXPECT_NEAR(report["widths"]["B"].toDouble(), 20.71, 0.1);
    // Existing formats keep their meaning.
    EXPECT_TRUE(cellsOf(after, "Data").value("A1")["bold"].toBool());

    // The overwritten formula was in the calculation chain: the chain goes.
    const QStringList changed = changedEntries(before, after);
    EXPECT_EQ(changed.join(' ').toStdString(),
              "[Content_Types].xml xl/_rels/workbook.xml.rels xl/calcChain.xml "
              "xl/styles.xml xl/worksheets/sheet3.xml");
    const QJsonObject entries = after["entries"].toObject();
    EXPECT_FALSE(entries.contains("xl/calcChain.xml"));
    for (const char *part : {"[Content_Types].xml", "xl/_rels/workbook.xml.rels"})
        EXPECT_FALSE(entryText(after, part).contains("calcChain")) << part;
    // Unchanged entries are copied compressed as they were.
    const QJsonObject old = before["entries"].toObject();
    for (const QString &name : old.keys()) {
        if (!changed.contains(name)) {
            EXPECT_EQ(entries[name]["csize"], old[name]["csize"]) << name.toStdString();
        }
    }

    // Exporting again into the same sheet reuses the formats appended the first time.
    book = Workbook::open(path);
    exportBlock(*book->worksheet(Report));
    saveWorkbook(*book);
    const QJsonObject again = dumpWorkbook(path);
    EXPECT_EQ(entryText(again, "xl/styles.xml"), entryText(after, "xl/styles.xml"));
    EXPECT_EQ(sheetOf(again, Report), report);
}

TEST(XlsxExisting, NewSheetIsAppendedLastAndOtherPartsStayIdentical)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("existing.xlsx");
    makeWorkbookFixtureWithChartSheet(path);
    const QJsonObject before = dumpWorkbook(path);

    auto book = Workbook::open(path);
    EXPECT_EQ(book->worksheetCount(), 3); // the chart sheet is no worksheet
    EXPECT_EQ(book->worksheet("图表"), nullptr);
    EXPECT_EQ(book->worksheet("新表"), nullptr);
    Worksheet *hidden = book->worksheet("other");
    ASSERT_NE(hidden, nullptr);
    EXPECT_FALSE(hidden->isVisible());
    hidden->setVisible(true);
    Worksheet &sheet = book->addWorksheetAfterLast();
    EXPECT_THROW(sheet.setName("图表"), xlsx::Error); // names span all sheets
    sheet.setName("新表");
    writeBlock(sheet, 2, 2);
    sheet.setCellValue(3, 1, "'0755123");
    saveWorkbook(*book);

    const QJsonObject after = dumpWorkbook(path);
    // Added after the last worksheet, so before the chart sheet.
    EXPECT_EQ(after["sheets"], QJsonArray({"Data", "Other", Report, "新表", "图表"}));
    EXPECT_EQ(after["hidden"], QJsonArray());
    const QJsonObject cells = cellsOf(after, "新表");
    EXPECT_EQ(cells["B2"]["value"], "r2c2");
    EXPECT_EQ(cells["A3"]["value"], "0755123");
    EXPECT_EQ(sheetOf(after, Report), sheetOf(before, Report));
    // No formula was overwritten: the calculation chain stays.
    EXPECT_EQ(changedEntries(before, after).join(' ').toStdString(),
              "[Content_Types].xml xl/_rels/workbook.xml.rels xl/styles.xml "
              "xl/workbook.xml xl/worksheets/sheet4.xml");
}

TEST(XlsxExisting, WorkbooksFromOtherWritersAreMergedCorrectly)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("prefixed.xlsx");
    makePrefixedWorkbookFixture(path);
    auto book = Workbook::open(path);
    Worksheet *ledger = book->worksheet("LEDGER");
    ASSERT_NE(ledger, nullptr);
    ledger->setRowFontSize(1, 14);
    ledger->setRangeBorders(1, 1, 2, 2);
    ledger->setColumnWidth(1, 10);
    ledger->merge(4, 1, 4, 2);
    ledger->setCellValue(1, 2, "replaced");
    ledger->setCellValue(2, 2, "new text");
    ledger->setCellValue(5, 1, "2024-03-31");
    book->addWorksheetAfterLast().setCellValue(1, 1, "first");
    saveWorkbook(*book);

    const QJsonObject dump = dumpWorkbook(path);
    EXPECT_EQ(dump["sheets"], QJsonArray({"Ledger", "Sheet2"}));
    const QJsonObject sheet = sheetOf(dump, "Ledger");
    const QJsonObject cells = sheet["cells"].toObject();
    // Row formats keep what each cell had: bold stays bold, 0.000 stays.
    const std::tuple<const char *, const char *, QJsonValue> expected[] = {
        {"A1", "value", "first"},    {"B1", "value", "replaced"},
        {"C1", "value", 1.5},        {"A2", "value", 2},
        {"B2", "value", "new text"}, {"A5", "value", "2024-03-31T00:00:00"},
        {"D5", "value", "third"},    {"A1", "bold", true},
        {"A1", "size", 14},          {"C1", "size", 14},
        {"C1", "format", "0.000"},
    };
    for (const auto &[ref, field, value] : expected)
        EXPECT_EQ(cells[ref][field], value) << ref << " " << field;
    EXPECT_EQ(cells["A2"]["border"][0], "thin");
    EXPECT_EQ(sheet["merges"], QJsonArray{"A4:B4"});
    EXPECT_NEAR(sheet["widths"]["A"].toDouble(), 10.71, 0.1);
    EXPECT_EQ(cellsOf(dump, "Sheet2").value("A1")["value"], "first");
}

TEST(XlsxExisting, FailuresLeaveTheFileUntouched)
{
    struct Case {
        const char *name;
        std::function<void(const QString &path)> prepare;
        bool failsOnOpen;
        const char *descriptionPart;
    };
    // Each case damages a copy of the fixture workbook.
    const auto readOnly = QFile::ReadOwner | QFile::ReadUser | QFile::ExeOwner | QFile::ExeUser;
    const Case cases[] = {
        {"read-only file", [&](const QString &p) { QFile::setPermissions(p, readOnly); }, false,
         "只读"},
        {"read-only folder",
         [&](const QString &p) { QFile::setPermissions(QFileInfo(p).path(), readOnly); }, false,
         "文件夹"},
        {"legacy xls",
         [](const QString &p) {
             writeBytes(p, QByteArray("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + QByteArray(1024, 0));
         },
         true, ".xls"},
        {"text file", [](const QString &p) { writeBytes(p, "just some text\n"); }, true,
         "不是有效"},
        // Renaming the workbook part inside the zip leaves a zip that is no workbook.
        {"zip without workbook",
         [](const QString &p) {
             writeBytes(p, bytesOf(p).replace("xl/workbook.xml", "xl/workbooq.xml"));
         },
         true, "不是有效"},
        {"truncated workbook", [](const QString &p) { writeBytes(p, bytesOf(p).left(600)); }, true,
         "不是有效"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir dir;
        const QString folder = dir.filePath("out");
        QDir().mkpath(folder);
        const QString path = folder + "/book.xlsx";
        makeWorkbookFixture(path);
        c.prepare(path);
        const QByteArray original = bytesOf(path);
        try {
            auto book = Workbook::open(path);
            EXPECT_FALSE(c.failsOnOpen);
            writeBlock(*book->worksheet(Report), 2, 2);
            saveWorkbook(*book);
            ADD_FAILURE() << "save succeeded";
        } catch (const xlsx::Error &e) {
            EXPECT_TRUE(e.description().contains(QString::fromUtf8(c.descriptionPart)))
                << e.description().toStdString();
        } catch (const RuntimeError &e) { // refused by the save, which stages every output
            EXPECT_FALSE(c.failsOnOpen);
            EXPECT_TRUE(e.description().contains(QString::fromUtf8(c.descriptionPart)))
                << e.description().toStdString();
        }
        EXPECT_EQ(bytesOf(path), original);
        EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{"book.xlsx"});
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    EXPECT_THROW(Workbook::open(QDir::temp().filePath("no-such-book.xlsx")), xlsx::Error);
}
