// Which cells a protected sheet keeps closed: a cell's own format, else its
// row's (when the row says so), else its column's, else the first format.

#include "xlsx/xlsxsheetlayout.h"
#include "xlsx/xlsxsheetprotection.h"
#include "xlsx/xlsxstylesheet.h"

#include <gtest/gtest.h>

using namespace quorvale::xlsx;

namespace {

// Format 0 locked (Excel's default), format 1 unlocked.
const QByteArray Styles =
    "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
    "<fonts count=\"1\"><font/></fonts><fills count=\"1\"><fill/></fills>"
    "<borders count=\"1\"><border/></borders>"
    "<cellXfs count=\"2\"><xf/><xf applyProtection=\"1\"><protection locked=\"0\"/></xf></cellXfs>"
    "</styleSheet>";

QByteArray sheet(const QByteArray &cols, const QByteArray &rows, bool protectedSheet = true)
{
    return "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">" +
           cols + "<sheetData>" + rows + "</sheetData>" +
           (protectedSheet ? "<sheetProtection sheet=\"1\"/>" : "") + "</worksheet>";
}

} // namespace

TEST(SheetProtection, LockedCellsAreFoundWhereverTheirFormatComesFrom)
{
    const QByteArray openCols = "<cols><col min=\"1\" max=\"3\" style=\"1\"/></cols>";
    const struct {
        const char *name;
        QByteArray xml;
        const char *locked; // first locked cell of A1:C3, or nullptr
    } cases[] = {
        {"cells unlocked one by one",
         sheet({}, "<row r=\"1\"><c r=\"A1\" s=\"1\"/><c r=\"B1\" s=\"1\"/><c r=\"C1\" s=\"1\"/></row>"
                   "<row r=\"2\"><c r=\"A2\" s=\"1\"/><c r=\"B2\" s=\"1\"/><c r=\"C2\" s=\"1\"/></row>"
                   "<row r=\"3\"><c s=\"1\"/><c s=\"1\"/><c s=\"1\"/></row>"),
         nullptr},
        {"one cell without the format", sheet({}, "<row r=\"2\"><c r=\"B2\" s=\"1\"/></row>"), "A1"},
        {"columns unlocked, no rows", sheet(openCols, {}), nullptr},
        {"columns unlocked, a cell locked",
         sheet(openCols, "<row r=\"3\"><c r=\"C3\"><v>1</v></c></row>"), "C3"},
        {"a row's format wins over the columns'",
         sheet(openCols, "<row r=\"2\" s=\"0\" customFormat=\"1\"/>"), "A2"},
        {"a row's format without customFormat does not",
         sheet(openCols, "<row r=\"2\" s=\"0\"/>"), nullptr},
        {"a row format unlocks its empty cells",
         sheet({}, "<row r=\"1\" s=\"1\" customFormat=\"1\"/><row r=\"2\" s=\"1\" customFormat=\"true\"/>"
                   "<row r=\"3\" s=\"1\" customFormat=\"1\"><c r=\"B3\"/></row>"),
         "B3"},
        {"only the fourth column locked", sheet("<cols><col min=\"1\" max=\"3\" style=\"1\"/>"
                                                "<col min=\"4\" max=\"4\" style=\"0\"/></cols>", {}),
         nullptr},
        {"a format the styles lack counts as the first",
         sheet(openCols, "<row r=\"1\"><c r=\"A1\" s=\"99\"/></row>"), "A1"},
    };
    const StyleSheet styles(Styles);
    const CellRange block{1, 1, 3, 3};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(SheetProtection::isProtected(c.xml));
        const auto locked = SheetProtection::firstLockedCell(c.xml, styles, block);
        EXPECT_EQ(locked.value_or("none"), QByteArray(c.locked ? c.locked : "none"));
    }
}

TEST(SheetProtection, OnlyAnActiveProtectionCounts)
{
    const std::pair<const char *, bool> cases[] = {
        {"<sheetProtection sheet=\"1\" objects=\"1\"/>", true},
        {"<x:sheetProtection sheet=\"true\"/>", true},
        {"<sheetProtection objects=\"1\" scenarios=\"1\"/>", false},
        {"<sheetProtection sheet=\"0\"/>", false},
        {"", false},
    };
    for (const auto &[element, expected] : cases) {
        SCOPED_TRACE(element);
        const QByteArray xml = "<worksheet><sheetData><row r=\"1\"/></sheetData>" +
                               QByteArray(element) + "</worksheet>";
        EXPECT_EQ(SheetProtection::isProtected(xml), expected);
    }
}
