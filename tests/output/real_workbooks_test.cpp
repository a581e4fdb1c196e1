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

using quorvale::testing::entryText;

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

// "protected_locked@add.xlsx" is another file of the shape protected-locked.
QString shapeOf(const QString &file)
{
    return file.section(u'.', 0, 0).section(u'@', 0, 0).replace(u'_', u'-');
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
             EXPECT_FALSE(entryText(dump, "xl/_rels/workbook.xml.rels")
                              .contains("schemas.openxmlformats.org/officeDocument"));
             EXPECT_TRUE(entryText(dump, "xl/worksheets/sheet2.xml")
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
             EXPECT_TRUE(entryText(dump, "[Content_Types].xml")
                             .contains("application/vnd.ms-excel.sheet.macroEnabled.main+xml"));
         }},
        // Excel lets a protected sheet change only where its cells are
        // unlocked, and a locked structure take no new sheet.
        {"protected_locked.xlsx", "Sheet1", "工作表“Sheet1”在 Excel 中受保护"},
        {"protected_locked@add.xlsx", "报表"},
        {"protected_unlocked.xlsx",
         "Sheet1",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &path) {
             const QJsonObject sheet = sheetOf(dump, "Sheet1");
             EXPECT_TRUE(sheet["protected"].toBool());
             const QJsonObject cells = sheet["cells"].toObject();
             for (const char *ref : {"A1", "C1", "B2", "A3", "C3"})
                 EXPECT_FALSE(cells[ref]["locked"].toBool()) << ref;
             EXPECT_EQ(cells["E2"]["value"], "keep");
             EXPECT_TRUE(cells["E2"]["locked"].toBool());
             // Next month's export finds the cells as open as this one did.
             FlexGrid grid;
             fillGrid(grid);
             EXPECT_NO_THROW(writeTableToWorkbook(grid.table(), {0, 1, 2},
                                                  {ExportVariant::Customer, path, "Sheet1", "t"}));
         }},
        {"structure_locked.xlsx", "报表", "不能添加工作表“报表”"},
        {"structure_locked@rewrite.xlsx",
         "Sheet1",
         nullptr,
         {},
         [](const QJsonObject &dump, const QString &) {
             EXPECT_TRUE(dump["lockStructure"].toBool());
             EXPECT_EQ(dump["sheets"], QJsonArray({"Sheet1"}));
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
        writeTableToWorkbook(grid.table(), {0, 1, 2}, {ExportVariant::Customer, path, Report, "t"})
            .notes;
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

TEST(RealWorkbooks, OldXlsIsWrittenAsAConvertedCopyBesideIt)
{
    QTemporaryDir dir;
    // An Excel 97-2003 file as LibreOffice saves it, from a workbook built here.
    runWorkbookTool({"shape", "plain", dir.filePath("made.xlsx")});
    const QByteArray xls =
        bytesOf(convertWithLibreOffice(dir.filePath("made.xlsx"), "xls:MS Excel 97", dir.path()));
    FlexGrid grid;
    fillGrid(grid);
    const QString baseline = dir.filePath("baseline.xlsx");
    writeTableToWorkbook(grid.table(), {0, 1, 2}, {ExportVariant::Customer, baseline, Report, "t"});

    const QString noLibreOffice = dir.filePath("empty-path");
    QDir().mkpath(noLibreOffice);
    const struct {
        const char *name;
        QByteArray bytes;
        const char *refusal; // nullptr: converted and written
        bool xlsxThere = false;
        bool withoutLibreOffice = false;
    } cases[] = {
        {"old", xls, nullptr},
        {"taken", xls, "已经存在，不会覆盖它", true},
        {"nolibre", xls, "本机没有安装 LibreOffice", false, true},
        // A compound file without Excel's workbook stream: an encrypted .xlsx, a document.
        {"locked", QByteArray::fromHex("d0cf11e0a1b11ae1") + QByteArray(1024, '\0'), "已加密"},
    };
    const QByteArray path = qgetenv("PATH");
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QString name = QString::fromLatin1(c.name);
        const QString old = dir.filePath(name + ".xls");
        const QString converted = dir.filePath(name + ".xlsx");
        writeBytes(old, c.bytes);
        if (c.xlsxThere)
            runWorkbookTool({"shape", "plain", converted});
        const QByteArray xlsxBefore = QFile::exists(converted) ? bytesOf(converted) : QByteArray();
        if (c.withoutLibreOffice)
            qputenv("PATH", noLibreOffice.toLocal8Bit());
        try {
            const WrittenWorkbook written = writeTableToWorkbook(
                grid.table(), {0, 1, 2}, {ExportVariant::Customer, old, Report, "t"});
            qputenv("PATH", path);
            if (c.refusal) {
                ADD_FAILURE() << "written although it must be refused";
                continue;
            }
            EXPECT_EQ(written.path, converted);
            EXPECT_EQ(written.notes, QStringList{"已转换为 old.xlsx 并输出到其中；原文件 old.xls 未改动"});
        } catch (const RuntimeError &e) {
            qputenv("PATH", path);
            EXPECT_TRUE(c.refusal && e.description().contains(QString::fromUtf8(c.refusal)))
                << e.description().toStdString();
            EXPECT_EQ(QFile::exists(converted) ? bytesOf(converted) : QByteArray(), xlsxBefore);
        }
        EXPECT_EQ(bytesOf(old), c.bytes);
    }

    // The copy holds the old sheet and the report, for openpyxl and LibreOffice alike.
    const QString copy = dir.filePath("old.xlsx");
    const QJsonObject dump = dumpWorkbook(copy);
    EXPECT_EQ(dump["sheets"], QJsonArray({"Sheet1", Report}));
    EXPECT_EQ(cellsOf(dump, "Sheet1").value("A1")["value"], "note");
    EXPECT_EQ(block(cellsOf(dump, Report)), block(cellsOf(dumpWorkbook(baseline), Report)));
    const auto shown = libreOfficeSheets({baseline, copy});
    EXPECT_EQ(topLeft(shown.value("old/" + Report)), topLeft(shown.value("baseline/" + Report)));
    EXPECT_EQ(shown.value("old/Sheet1").value(0).value(0), "note");
}
