#include "output/overviewsheet.h"
#include "support/files.h"
#include "support/xlsxdump.h"
#include "xlsx/xlsxworkbook.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;

using quorvale::testing::entryText;

namespace {

OfficeOverview sample()
{
    OfficeOverview o;
    o.headingLines = {"公司", "(一处) 月末概览"};
    o.hasArrears = true;
    ArrearsLine fee;
    fee.feeItem = "物业费";
    fee.places = 1;
    fee.entries = 2;
    fee.receivable = Amount::parse("200");
    o.propertyArrears.lines << fee;
    o.propertyArrears.subtotal = o.totalArrears = fee;
    for (const char *label : {"当月", "1-3个月", "4-6个月", "7-12个月", "12个月以上"})
        o.ages << AgeLine{label, 0, {}};
    o.ages[0] = AgeLine{"当月", 2, Amount::parse("200")};
    return o;
}

} // namespace

// A Strict workbook takes the overview's charts in its own vocabulary: a
// transitional part in a Strict package is one no reader opens.
TEST(OverviewSheet, ChartsOfAStrictWorkbookAreStrict)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("strict.xlsx");
    quorvale::testing::runWorkbookTool({"shape", "strict", path});
    {
        auto book = xlsx::Workbook::open(path);
        writeOverviewSheet(*book, officeOverviewCells(sample()), overviewSheetName());
        quorvale::testing::saveWorkbook(*book);
    }
    const QJsonObject dump = quorvale::testing::dumpWorkbook(path);
    QStringList charts, drawings;
    for (const QString &name : dump["entries"].toObject().keys()) {
        if (name.startsWith("xl/charts/"))
            charts << name;
        if (name.startsWith("xl/drawings/_rels/") || name.startsWith("xl/worksheets/_rels/"))
            drawings << name;
    }
    ASSERT_EQ(charts.size(), 2);
    for (const QString &part : charts + drawings) {
        SCOPED_TRACE(part.toStdString());
        EXPECT_TRUE(entryText(dump, part).contains("purl.oclc.org/ooxml/"));
        EXPECT_FALSE(entryText(dump, part).contains("schemas.openxmlformats.org/drawingml"));
        EXPECT_FALSE(entryText(dump, part).contains("schemas.openxmlformats.org/officeDocument"));
    }
    const QString workbook = entryText(dump, "xl/workbook.xml");
    EXPECT_LT(workbook.indexOf("月末概览"), workbook.indexOf("Sheet1"));
}
