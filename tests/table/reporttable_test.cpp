// The report table on its own, without a grid to show it.

#include "table/reporttable.h"
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

// Cells hold only what was written, however they were written, and rows or
// columns dropped and added again come back empty.
TEST(ReportTable, CellsKeepOnlyWhatWasWritten)
{
    ReportTable table;
    table.setCols(71);
    table.setRows(4);
    struct Write {
        int row, col;
        QString text;
    };
    // Out of order, overwrites and clears, as the fill rules may do.
    const QVector<Write> writes = {
        {3, 70, "尾列"}, {3, 2, "A"},        {3, 10, "B"}, {3, 2, "更长的一段文字"},
        {3, 2, "C"},     {3, 10, QString()}, {1, 0, "0"}};
    for (const Write &w : writes)
        table.setText(w.row, w.col, w.text);
    for (int col = 0; col < 71; ++col) {
        const QString expected = col == 70 ? QStringLiteral("尾列") : col == 2 ? QStringLiteral("C") : QString();
        EXPECT_EQ(table.text(3, col), expected) << col;
    }

    // Texts of 65,535 chars and more are kept with a longer length mark.
    const QString longText(70000, QLatin1Char('x'));
    table.setText(2, 6, "后");
    table.setText(2, 5, longText);
    table.setText(2, 4, "前");
    table.appendRows({{QString(), longText, "后"}});
    // A copy taken before a row grows at its end keeps the row as it was.
    const ReportTable before = table;
    table.setText(2, 7, longText);
    EXPECT_EQ(table.text(2, 5), longText);
    EXPECT_EQ(table.text(2, 6), "后");
    EXPECT_EQ(table.text(2, 7), longText);
    EXPECT_EQ(before.text(2, 7), QString());
    EXPECT_EQ(before.text(2, 6), "后");
    EXPECT_EQ(table.text(4, 1), longText);

    table.setRows(2);
    table.setRows(5);
    EXPECT_EQ(table.text(3, 70), QString()) << "a row dropped and re-added starts empty";
    EXPECT_EQ(table.text(1, 0), "0");
    table.setColWidth(70, 3000);
    table.setAlignment(70, FlexAlign::RightCenter);
    table.setCols(3);
    table.setCols(71);
    EXPECT_EQ(table.colWidth(70), table.colWidth(69)) << "a column dropped and re-added starts fresh";
    EXPECT_EQ(table.alignment(70), FlexAlign::General);

    EXPECT_THROW(table.text(5, 0), RuntimeError);
    EXPECT_THROW(table.setText(0, 71, "x"), RuntimeError);
    EXPECT_THROW(table.setRows(0), RuntimeError);
    EXPECT_THROW(table.setAlignment(0, 10), RuntimeError);
    EXPECT_THROW(table.setFixedRows(3), RuntimeError);
}

// The heading, the alignments and each column's width (its text + 120 twips).
TEST(ReportTable, FormatStringSetsHeadingsAlignmentsAndWidths)
{
    struct Case {
        QString format;
        QStringList headings;
        QVector<int> alignments;
    };
    const QVector<Case> cases = {
        // Trailing blanks are part of the heading and widen its column.
        {"房号|<收费对象类型|>应收金额   |^状态",
         {"房号", "收费对象类型", "应收金额   ", "状态"},
         {FlexAlign::General, FlexAlign::LeftCenter, FlexAlign::RightCenter, FlexAlign::CenterCenter}},
        {"单列", {"单列"}, {FlexAlign::General}},
        {"|<|>", {QString(), QString(), QString()},
         {FlexAlign::General, FlexAlign::LeftCenter, FlexAlign::RightCenter}},
    };
    const TextWidthFn width = [](const QString &text) { return text.size() * 100.4; };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.format.toStdString());
        ReportTable table;
        table.setRows(1);
        table.setFormatString(c.format, width);
        ASSERT_EQ(table.cols(), c.headings.size());
        EXPECT_EQ(table.rows(), 1);
        EXPECT_EQ(table.formatString(), c.format);
        for (int col = 0; col < table.cols(); ++col) {
            EXPECT_EQ(table.text(0, col), c.headings[col]);
            EXPECT_EQ(table.alignment(col), c.alignments[col]);
            EXPECT_EQ(table.colWidth(col), qRound(c.headings[col].size() * 100.4) + 120);
        }
    }
}
