// The export into workbooks that other programs made: each row builds a
// workbook in a shape Excel, LibreOffice or another writer produces, exports a
// small report into it, and reads the result back with openpyxl and with
// LibreOffice. Written cells must read as in a new workbook; what cannot be
// written is refused with the file left as it was.

#include "output/exportoptions.h"
#include "output/gridexport.h"
#include "runtime/runtimeerror.h"
#include "support/files.h"
#include "support/libreoffice.h"
#include "support/xlsxdump.h"
#include "ui/flexgrid.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

using namespace quorvale;
using namespace quorvale::testing;

namespace {

const QString Report = QStringLiteral("报表");
const QString LongNumber = QStringLiteral("110101199003071234");

// 名称 | 日期 | 金额, two rows; a case may change cells before the export.
void fillGrid(FlexGrid &grid)
{
    grid.setRows(1);
    grid.setFormatString(QStringLiteral("<名称|<日期|>金额"));
    grid.appendRows({{QStringLiteral("甲"), QStringLiteral("2026-08-01"), QStringLiteral("85.5")},
                     {QStringLiteral("乙"), QStringLiteral("2024-11-02"), QStringLiteral("120")}});
}

struct Shape {
    const char *name;              // the file's name: shape (workbook_shapes.py) and extension
    const char *sheet;             // written: "Sheet1" is rewritten, 报表 added
    const char *refusal = nullptr; // part of the message when the export must refuse
    std::function<void(FlexGrid &)> edit = {};
    // What else the result must show, beyond the written block.
    std::function<void(const QJsonObject &dump, const QString &path)> check = {};
};

QString shapeOf(const QString &file)
{
    return file.section(u'.', 0, 0).replace(u'_', u'-');
}

QJsonObject block(const QJsonObject &cells)
{
    QJsonObject out;
    for (const char *ref : {"A1", "B1", "C1", "A2", "B2", "C2", "A3", "B3", "C3"})
        out[ref] = QJsonObject{{"value", cells[ref]["value"]}, {"isDate", cells[ref]["isDate"]}};
    return out;
}

QList<QStringList> topLeft(const QList<QStringList> &rows)
{
    QList<QStringList> out;
    for (qsizetype r = 0; r < 3 && r < rows.size(); ++r)
        out << rows[r].mid(0, 3);
    return out;
}

QString entry(const QJsonObject &dump, const QString &part)
{
    return dump["entries"][part]["text"].toString();
}

} // namespace

TEST(RealWorkbooks, ExportKeepsEveryShapeReadable)
{
    const Shape shapes[] = {
        {"date1904.xlsx", "Sheet1"},
        {"libreoffice_formats.xlsx", "报表"},
        {"empty_styles.xlsx", "报表"},
        {"prefixed.xlsx",
         "Sheet1",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             EXPECT_EQ(dump["sheets"], QJsonArray({"Sheet1"}));
         }},
        {"strict.xlsx",
         "报表",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             // openpyxl reads no Strict sheet; the package must stay Strict throughout.
             EXPECT_FALSE(entry(dump, "xl/_rels/workbook.xml.rels")
                              .contains("schemas.openxmlformats.org/officeDocument"));
             EXPECT_TRUE(entry(dump, "xl/worksheets/sheet2.xml")
                             .contains("purl.oclc.org/ooxml/spreadsheetml/main"));
         }},
        {"merges.xlsx",
         "Sheet1",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             EXPECT_EQ(sheetOf(dump, "Sheet1")["merges"], QJsonArray{"H1:I2"});
         }},
        {"hyperlinks.xlsx",
         "Sheet1",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             EXPECT_EQ(sheetOf(dump, "Sheet1")["links"], QJsonArray{"H10"});
         }},
        {"table.xlsx",
         "Sheet1",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             // Header cells and column names agree; the cleared fourth header
             // gets the name Excel gives a blank one.
             const QJsonObject sheet = sheetOf(dump, "Sheet1");
             EXPECT_EQ(sheet["tables"]["Stock"], QJsonArray({"名称", "日期", "金额", "Column4"}));
             EXPECT_EQ(cellsOf(dump, "Sheet1").value("D1")["value"], "Column4");
         }},
        {"shared_formula.xlsx",
         "Sheet1",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             // C2 held the shared formula's text; D2 and E2 keep working.
             const QJsonObject cells = sheetOf(dump, "Sheet1")["cells"].toObject();
             EXPECT_EQ(cells["D2"]["value"], "=B2*2");
             EXPECT_EQ(cells["E2"]["value"], "=C2*2");
         }},
        {"plain.xlsx", "Sheet1", nullptr,
         [](FlexGrid &grid) { grid.setTextMatrix(2, 2, LongNumber); },
         [](const QJsonObject &dump, const QString &) {
             EXPECT_EQ(cellsOf(dump, "Sheet1").value("C3")["value"], LongNumber);
         }},
        {"new.xlsm",
         "报表",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             EXPECT_TRUE(entry(dump, "[Content_Types].xml")
                             .contains("application/vnd.ms-excel.sheet.macroEnabled.main+xml"));
         }},
        {"array_formula.xlsx", "Sheet1", "数组公式（C2:D2）"},
        {"pivot.xlsx", "Sheet1", "数据透视表“Summary”（B3:C6）"},
        {"bad_crc.xlsx", "报表", "docProps/app.xml"},
        {"case_twins.xlsx", "报表", "xl/worksheets/Sheet1.xml"},
        {"new.csv", "报表", ".xlsx、.xlsm"},
    };

    QTemporaryDir dir;
    FlexGrid baseGrid;
    fillGrid(baseGrid);
    const QString baseline = dir.filePath("baseline.xlsx");
    const QVector<int> columns{0, 1, 2};
    writeTableToWorkbook(baseGrid.table(), columns, {ExportVariant::Customer, baseline, Report, "t"});
    const QJsonObject expected = block(cellsOf(dumpWorkbook(baseline), Report));

    QStringList written{baseline};
    QList<const Shape *> writtenShapes;
    for (const Shape &shape : shapes) {
        SCOPED_TRACE(shape.name);
        const QString path = dir.filePath(QString::fromLatin1(shape.name));
        if (!path.startsWith(dir.filePath("new")))
            runWorkbookTool({"shape", shapeOf(shape.name), path});
        const QByteArray before = bytesOf(path);
        FlexGrid grid;
        fillGrid(grid);
        if (shape.edit)
            shape.edit(grid);
        const QString sheet = QString::fromUtf8(shape.sheet);
        try {
            writeTableToWorkbook(grid.table(), columns, {ExportVariant::Customer, path, sheet, "t"});
            if (shape.refusal) {
                ADD_FAILURE() << "written although it must be refused";
                continue;
            }
        } catch (const RuntimeError &e) {
            if (!shape.refusal) {
                ADD_FAILURE() << "refused: " << e.description().toStdString();
                continue;
            }
            EXPECT_TRUE(e.description().contains(QString::fromUtf8(shape.refusal)))
                << e.description().toStdString();
            EXPECT_EQ(bytesOf(path), before);
            continue;
        } catch (const std::exception &e) {
            ADD_FAILURE() << "failed: " << e.what();
            continue;
        }
        const QJsonObject dump = dumpWorkbook(path);
        if (QString::fromLatin1(shape.name) != "strict.xlsx") {
            QJsonObject got = block(cellsOf(dump, sheet));
            if (shape.edit) // the changed cell is checked by the row itself
                got["C3"] = expected["C3"];
            EXPECT_EQ(got, expected);
        }
        if (shape.check)
            shape.check(dump, path);
        written << path;
        writtenShapes << &shape;
    }

    // LibreOffice opens every result and shows the written cells as it shows
    // those of a new workbook.
    const auto shown = libreOfficeSheets(written);
    const QList<QStringList> want = topLeft(shown.value("baseline/" + Report));
    ASSERT_EQ(want.size(), 3);
    for (const Shape *shape : writtenShapes) {
        SCOPED_TRACE(shape->name);
        const QString key = QString::fromLatin1(shape->name).section(u'.', 0, 0) + u'/' +
                            QString::fromUtf8(shape->sheet);
        QList<QStringList> got = topLeft(shown.value(key));
        if (shape->edit && got.size() == 3)
            got[2][2] = want[2][2];
        EXPECT_EQ(got, want);
    }
}

TEST(RealWorkbooks, TextLongerThanACellIsCutAndSaidSo)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("long.xlsx");
    FlexGrid grid;
    fillGrid(grid);
    grid.setTextMatrix(1, 0, QString(40000, u'长'));
    const QStringList warnings =
        writeTableToWorkbook(grid.table(), {0, 1, 2}, {ExportVariant::Customer, path, Report, "t"});
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_TRUE(warnings[0].contains(Report) && warnings[0].contains("A2") &&
                warnings[0].contains("32767"))
        << warnings[0].toStdString();
    const QJsonObject cells = cellsOf(dumpWorkbook(path), Report);
    const QString kept = cells["A2"]["value"].toString();
    EXPECT_EQ(kept.size(), 32767);
    EXPECT_EQ(kept.count(u'长'), kept.size());
}

TEST(RealWorkbooks, WorkbookOpenInLibreOfficeIsRefused)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("open.xlsx");
    runWorkbookTool({"shape", "plain", path});
    writeBytes(dir.filePath(".~lock.open.xlsx#"), ",user,host,01.01.2026 10:00,file:///x;");
    const QByteArray before = bytesOf(path);
    FlexGrid grid;
    fillGrid(grid);
    try {
        writeTableToWorkbook(grid.table(), {0, 1, 2}, {ExportVariant::Customer, path, Report, "t"});
        ADD_FAILURE() << "written into a workbook open in LibreOffice";
    } catch (const RuntimeError &e) {
        EXPECT_TRUE(e.description().contains("LibreOffice")) << e.description().toStdString();
    }
    EXPECT_EQ(bytesOf(path), before);
}
