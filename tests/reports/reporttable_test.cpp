// The report table on its own, without a grid to show it.

#include "reports/reporttable.h"
#include "runtime/runtimeerror.h"

#include <gtest/gtest.h>

using namespace quorvale;

// A row read in one pass holds what each cell holds, however its texts are packed.
TEST(ReportTable, ARowReadWholeEqualsItsCells)
{
    ReportTable table;
    table.setCols(5);
    table.setRows(1);
    const QString longText(70000, u'长'); // longer than a packed run's short length
    table.appendRows({{"a", "", "c"}, {"", "", "", "", "e"}, {longText, "b", "c", "d", "e", "dropped"}});
    table.setText(1, 1, "set later");
    table.setText(3, 2, "");
    QStringList cells{"left", "over", "from", "before", "x", "y", "z"};
    for (int r = 0; r < table.rows(); ++r) {
        SCOPED_TRACE(r);
        table.readRow(r, cells);
        ASSERT_EQ(cells.size(), 5);
        for (int c = 0; c < 5; ++c)
            EXPECT_EQ(cells[c], table.text(r, c)) << c;
    }
    table.readRow(3, cells);
    EXPECT_EQ(cells, (QStringList{longText, "b", "", "d", "e"}));
    table.setCols(2);
    table.readRow(3, cells);
    EXPECT_EQ(cells, (QStringList{longText, "b"}));
    EXPECT_THROW(table.readRow(4, cells), RuntimeError);
}
