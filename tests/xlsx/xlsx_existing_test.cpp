#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"
#include "support/xlsxdump.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

using namespace quorvale;
using namespace quorvale::xlsx;
using quorvale::testing::dumpWorkbook;
using quorvale::testing::makeWorkbookFixture;

namespace {

const QString Report = QStringLiteral("报表");

QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeBlock(Worksheet &sheet, int rows, int cols)
{
    for (int r = 1; r <= rows; ++r)
        for (int c = 1; c <= cols; ++c)
            sheet.setCellValue(r, c, QStringLiteral("r%1c%2").arg(r).arg(c));
    sheet.setRangeBorders(1, 1, rows, cols);
    sheet.setRowFontSize(1, 14);
}

// Zip entries whose content differs between two dumps (or exists in one only).
QString changedEntries(const QJsonObject &before, const QJsonObject &after)
{
    QStringList changed;
    const QJsonObject a = before[QStringLiteral("entries")].toObject();
    const QJsonObject b = after[QStringLiteral("entries")].toObject();
    for (const QString &name : a.keys())
        if (a[name] != b[name])
            changed.append(name);
    for (const QString &name : b.keys())
        if (!a.contains(name))
            changed.append(name);
    changed.sort();
    return changed.join(u' ');
}

} // namespace

TEST(XlsxExisting, RewritesSheetInPlaceKeepingEverythingElse)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("existing.xlsx"));
    makeWorkbookFixture(path);
    const QJsonObject before = dumpWorkbook(path);

    auto book = Workbook::open(path);
    ASSERT_EQ(book->worksheetCount(), 3);
    Worksheet *sheet = book->worksheet(QStringLiteral("报表"));
    ASSERT_NE(sheet, nullptr);
    writeBlock(*sheet, 3, 3); // covers the formula in C3
    sheet->setColumnWidth(2, 20);
    sheet->merge(1, 1, 1, 2);
    book->save();
    book->save(); // a second save merges into the sheet as opened again

    const QJsonObject after = dumpWorkbook(path);
    EXPECT_EQ(after[QStringLiteral("sheets")], before[QStringLiteral("sheets")]);
    const QJsonObject cells = after[QStringLiteral("data")][Report][QStringLiteral("cells")].toObject();
    EXPECT_EQ(cells[QStringLiteral("A1")][QStringLiteral("value")].toString(), QStringLiteral("r1c1"));
    EXPECT_EQ(cells[QStringLiteral("C3")][QStringLiteral("value")].toString(), QStringLiteral("r3c3"));
    EXPECT_EQ(cells[QStringLiteral("A1")][QStringLiteral("size")].toDouble(), 14);
    // Cells outside the block, the row style on row 1 and existing merges stay.
    EXPECT_EQ(cells[QStringLiteral("H20")][QStringLiteral("value")].toString(), QStringLiteral("keep me"));
    EXPECT_EQ(cells[QStringLiteral("A30")][QStringLiteral("value")].toInt(), 42);
    EXPECT_EQ(cells[QStringLiteral("Z1")][QStringLiteral("value")].toString(), QStringLiteral("row one far"));
    EXPECT_EQ(cells[QStringLiteral("Z1")][QStringLiteral("size")].toDouble(), 14); // Rows(1) formats it too
    const QJsonObject report = after[QStringLiteral("data")][Report].toObject();
    EXPECT_EQ(report[QStringLiteral("merges")].toArray(),
              (QJsonArray{QStringLiteral("A1:B1"), QStringLiteral("J1:K2")}));
    EXPECT_TRUE(cells[QStringLiteral("B1")][QStringLiteral("value")].isNull());
    // Excel rejects sheets whose elements are out of schema order.
    const QString xml = after[QStringLiteral("entries")][QStringLiteral("xl/worksheets/sheet3.xml")]
                            [QStringLiteral("text")].toString();
    const QStringList order{QStringLiteral("<dimension"), QStringLiteral("<cols>"),
                            QStringLiteral("<sheetData>"), QStringLiteral("<mergeCells"),
                            QStringLiteral("<conditionalFormatting"), QStringLiteral("<pageMargins")};
    for (qsizetype i = 1; i < order.size(); ++i)
        EXPECT_LT(xml.indexOf(order[i - 1]), xml.indexOf(order[i])) << order[i].toStdString();
    EXPECT_EQ(report[QStringLiteral("conditional")].toArray(), QJsonArray{QStringLiteral("H1:H5")});
    EXPECT_NEAR(report[QStringLiteral("widths")][QStringLiteral("B")].toDouble(), 20.71, 0.1);
    // Existing formats keep their meaning.
    EXPECT_TRUE(after[QStringLiteral("data")][QStringLiteral("Data")][QStringLiteral("cells")]
                     [QStringLiteral("A1")][QStringLiteral("bold")].toBool());

    // The overwritten formula was in the calculation chain: the chain goes.
    const QString changed = changedEntries(before, after);
    EXPECT_EQ(changed.toStdString(), "[Content_Types].xml xl/_rels/workbook.xml.rels xl/calcChain.xml "
                                     "xl/sharedStrings.xml xl/styles.xml xl/worksheets/sheet3.xml");
    const QJsonObject entries = after[QStringLiteral("entries")].toObject();
    EXPECT_FALSE(entries.contains(QStringLiteral("xl/calcChain.xml")));
    EXPECT_FALSE(entries[QStringLiteral("[Content_Types].xml")][QStringLiteral("text")].toString().contains(
        QStringLiteral("calcChain")));
    EXPECT_FALSE(entries[QStringLiteral("xl/_rels/workbook.xml.rels")][QStringLiteral("text")].toString().contains(
        QStringLiteral("calcChain")));
    // Unchanged entries are copied compressed as they were.
    const QJsonObject old = before[QStringLiteral("entries")].toObject();
    for (const QString &name : old.keys()) {
        if (!changed.split(u' ').contains(name)) {
            EXPECT_EQ(entries[name][QStringLiteral("csize")], old[name][QStringLiteral("csize")])
                << name.toStdString();
        }
    }

    // Exporting again into the same sheet reuses the formats appended the first time.
    const QString styles1 = entries[QStringLiteral("xl/styles.xml")][QStringLiteral("text")].toString();
    book = Workbook::open(path);
    writeBlock(*book->worksheet(Report), 3, 3);
    book->save();
    const QJsonObject again = dumpWorkbook(path);
    EXPECT_EQ(again[QStringLiteral("entries")][QStringLiteral("xl/styles.xml")][QStringLiteral("text")].toString(),
              styles1);
    EXPECT_EQ(again[QStringLiteral("data")][Report], after[QStringLiteral("data")][Report]);
}

TEST(XlsxExisting, NewSheetIsAppendedLastAndOtherPartsStayIdentical)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("existing.xlsx"));
    quorvale::testing::makeWorkbookFixtureWithChartSheet(path);
    const QJsonObject before = dumpWorkbook(path);

    auto book = Workbook::open(path);
    EXPECT_EQ(book->worksheetCount(), 3); // the chart sheet is no worksheet
    EXPECT_EQ(book->worksheet(QStringLiteral("图表")), nullptr);
    EXPECT_EQ(book->worksheet(QStringLiteral("新表")), nullptr);
    Worksheet *hidden = book->worksheet(QStringLiteral("other"));
    ASSERT_NE(hidden, nullptr);
    EXPECT_FALSE(hidden->isVisible());
    hidden->setVisible(true);
    Worksheet &sheet = book->addWorksheetAfterLast();
    EXPECT_THROW(sheet.setName(QStringLiteral("图表")), xlsx::Error); // names span all sheets
    sheet.setName(QStringLiteral("新表"));
    writeBlock(sheet, 2, 2);
    sheet.setCellValue(3, 1, QStringLiteral("'0755123"));
    book->save();

    const QJsonObject after = dumpWorkbook(path);
    // Added after the last worksheet, so before the chart sheet.
    EXPECT_EQ(after[QStringLiteral("sheets")].toArray(),
              (QJsonArray{QStringLiteral("Data"), QStringLiteral("Other"), Report, QStringLiteral("新表"),
                          QStringLiteral("图表")}));
    EXPECT_EQ(after[QStringLiteral("hidden")].toArray(), QJsonArray());
    const QJsonObject cells = after[QStringLiteral("data")][QStringLiteral("新表")][QStringLiteral("cells")].toObject();
    EXPECT_EQ(cells[QStringLiteral("B2")][QStringLiteral("value")].toString(), QStringLiteral("r2c2"));
    EXPECT_EQ(cells[QStringLiteral("A3")][QStringLiteral("value")].toString(), QStringLiteral("0755123"));
    EXPECT_EQ(after[QStringLiteral("data")][Report], before[QStringLiteral("data")][Report]);
    // No formula was overwritten: the calculation chain stays.
    EXPECT_EQ(changedEntries(before, after).toStdString(),
              "[Content_Types].xml xl/_rels/workbook.xml.rels xl/sharedStrings.xml xl/styles.xml "
              "xl/workbook.xml xl/worksheets/sheet4.xml");
}

TEST(XlsxExisting, WorkbooksFromOtherWritersAreMergedCorrectly)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("prefixed.xlsx"));
    quorvale::testing::makePrefixedWorkbookFixture(path);
    auto book = Workbook::open(path);
    Worksheet *ledger = book->worksheet(QStringLiteral("LEDGER"));
    ASSERT_NE(ledger, nullptr);
    ledger->setCellValue(1, 2, QStringLiteral("replaced"));
    ledger->setCellValue(2, 2, QStringLiteral("new text"));
    ledger->setCellValue(5, 1, QStringLiteral("2024-03-31"));
    ledger->setRowFontSize(1, 14);
    ledger->setRangeBorders(1, 1, 2, 2);
    ledger->setColumnWidth(1, 10);
    ledger->merge(4, 1, 4, 2);
    Worksheet &added = book->addWorksheetAfterLast();
    added.setCellValue(1, 1, QStringLiteral("first"));
    book->save();

    const QJsonObject dump = dumpWorkbook(path);
    EXPECT_EQ(dump[QStringLiteral("sheets")].toArray(),
              (QJsonArray{QStringLiteral("Ledger"), QStringLiteral("Sheet2")}));
    const QJsonObject sheet = dump[QStringLiteral("data")][QStringLiteral("Ledger")].toObject();
    const QJsonObject cells = sheet[QStringLiteral("cells")].toObject();
    auto value = [&](const char *ref) { return cells[QString::fromLatin1(ref)][QStringLiteral("value")]; };
    auto field = [&](const char *ref, const char *name) {
        return cells[QString::fromLatin1(ref)][QString::fromLatin1(name)];
    };
    EXPECT_EQ(value("A1"), QStringLiteral("first"));
    EXPECT_EQ(value("B1"), QStringLiteral("replaced"));
    EXPECT_EQ(value("C1"), 1.5);
    EXPECT_EQ(value("A2"), 2);
    EXPECT_EQ(value("B2"), QStringLiteral("new text"));
    EXPECT_EQ(value("A5"), QStringLiteral("2024-03-31T00:00:00"));
    EXPECT_EQ(value("D5"), QStringLiteral("third"));
    // Row formats keep what each cell had: bold stays bold, 0.000 stays.
    EXPECT_TRUE(field("A1", "bold").toBool());
    EXPECT_EQ(field("A1", "size"), 14);
    EXPECT_EQ(field("C1", "size"), 14);
    EXPECT_EQ(field("C1", "format"), QStringLiteral("0.000"));
    EXPECT_EQ(field("A2", "border").toArray().first(), QStringLiteral("thin"));
    EXPECT_EQ(sheet[QStringLiteral("merges")].toArray(), QJsonArray{QStringLiteral("A4:B4")});
    EXPECT_NEAR(sheet[QStringLiteral("widths")][QStringLiteral("A")].toDouble(), 10.71, 0.1);
    EXPECT_EQ(dump[QStringLiteral("data")][QStringLiteral("Sheet2")][QStringLiteral("cells")]
                  [QStringLiteral("A1")][QStringLiteral("value")],
              QStringLiteral("first"));
}

TEST(XlsxExisting, FailuresLeaveTheFileUntouched)
{
    struct Case {
        const char *name;
        std::function<void(const QString &path)> prepare;
        bool failsOnOpen;
        const char *descriptionPart;
    };
    auto writeFile = [](const QString &path, const QByteArray &bytes) {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    };
    const Case cases[] = {
        {"read-only file", [](const QString &p) {
             makeWorkbookFixture(p);
             QFile::setPermissions(p, QFile::ReadOwner | QFile::ReadUser);
         }, false, "只读"},
        {"read-only folder", [](const QString &p) {
             makeWorkbookFixture(p);
             const QString folder = QFileInfo(p).absolutePath();
             QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadUser |
                                               QFile::ExeUser);
         }, false, "文件夹"},
        {"legacy xls", [&](const QString &p) {
             writeFile(p, QByteArray("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + QByteArray(1024, '\0'));
         }, true, ".xls"},
        {"text file", [&](const QString &p) { writeFile(p, "just some text\n"); }, true, "不是有效"},
        {"zip without workbook", [&](const QString &p) {
             makeWorkbookFixture(p);
             QByteArray bytes = fileBytes(p);
             // Renaming the workbook part inside the zip leaves a zip that is no workbook.
             bytes.replace("xl/workbook.xml", "xl/workbooq.xml");
             writeFile(p, bytes);
         }, true, "不是有效"},
        {"truncated workbook", [&](const QString &p) {
             makeWorkbookFixture(p);
             writeFile(p, fileBytes(p).left(600));
         }, true, "不是有效"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("out"));
        QDir().mkpath(folder);
        const QString path = folder + QStringLiteral("/book.xlsx");
        c.prepare(path);
        const QByteArray original = fileBytes(path);
        try {
            auto book = Workbook::open(path);
            EXPECT_FALSE(c.failsOnOpen);
            writeBlock(*book->worksheet(Report), 2, 2);
            book->save();
            ADD_FAILURE() << "save succeeded";
        } catch (const xlsx::Error &e) {
            EXPECT_TRUE(e.description().contains(QString::fromUtf8(c.descriptionPart)))
                << e.description().toStdString();
        }
        EXPECT_EQ(fileBytes(path), original);
        EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("book.xlsx")});
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    EXPECT_THROW(Workbook::open(QDir::temp().filePath(QStringLiteral("no-such-book.xlsx"))), xlsx::Error);
}
