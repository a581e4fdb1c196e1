#include "runtime/runtimeerror.h"
#include "ui/flexgrid.h"
#include "ui/flexgridmodel.h"

#include <QAbstractItemModelTester>
#include <QFontMetricsF>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

double measured(const FlexGrid &grid, const QString &text)
{
    return QFontMetricsF(grid.font(), &grid).horizontalAdvance(text) * 1440.0 / grid.logicalDpiX();
}

QVariant shown(const FlexGrid &grid, int gridRow, int col, int role = Qt::DisplayRole)
{
    const FlexGridModel *model = grid.gridModel();
    return model->data(model->index(gridRow - grid.table().fixedRows(), col), role);
}

} // namespace

TEST(FlexGrid, FormatStringSetsColumnsHeadingsAlignmentAndWidths)
{
    struct Case {
        QString format;
        QStringList headings;
        QVector<int> alignments;
    };
    const QVector<Case> cases = {
        // Trailing blanks are part of the heading and widen its column.
        {"房号|<收费对象类型|>应收金额          |^状态",
         {"房号", "收费对象类型", "应收金额          ", "状态"},
         {FlexAlign::General, FlexAlign::LeftCenter, FlexAlign::RightCenter,
          FlexAlign::CenterCenter}},
        {"单列", {"单列"}, {FlexAlign::General}},
        {"|<|>",
         {QString(), QString(), QString()},
         {FlexAlign::General, FlexAlign::LeftCenter, FlexAlign::RightCenter}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.format.toStdString());
        FlexGrid grid;
        grid.setRows(1);
        grid.setFormatString(c.format);
        ASSERT_EQ(grid.Cols(), c.headings.size());
        EXPECT_EQ(grid.Rows(), 1);
        for (int col = 0; col < grid.Cols(); ++col) {
            EXPECT_EQ(grid.TextMatrix(0, col), c.headings[col]);
            EXPECT_EQ(grid.ColAlignment(col), c.alignments[col]);
            EXPECT_GE(grid.ColWidth(col), measured(grid, c.headings[col]));
        }
    }
}

TEST(FlexGrid, TextMatrixKeepsOnlyWhatWasWritten)
{
    FlexGrid grid;
    grid.setCols(71);
    grid.setRows(4);
    struct Write {
        int row, col;
        QString text;
    };
    // Out of order, overwrites and clears, as the fill rules may do.
    const QVector<Write> writes = {
        {3, 70, "尾列"}, {3, 2, "A"},        {3, 10, "B"}, {3, 2, "更长的一段文字"},
        {3, 2, "C"},     {3, 10, QString()}, {1, 0, "0"}};
    for (const Write &w : writes)
        grid.setTextMatrix(w.row, w.col, w.text);
    for (int col = 0; col < 71; ++col) {
        const QString expected = col == 70  ? QStringLiteral("尾列")
                                 : col == 2 ? QStringLiteral("C")
                                            : QString();
        EXPECT_EQ(grid.TextMatrix(3, col), expected) << col;
    }
    EXPECT_EQ(grid.TextMatrix(1, 0), QStringLiteral("0"));

    // Texts of 65,535 chars and more are kept with a longer length mark.
    const QString longText(70000, QLatin1Char('x'));
    grid.setTextMatrix(2, 6, QStringLiteral("后"));
    grid.setTextMatrix(2, 5, longText);
    grid.setTextMatrix(2, 4, QStringLiteral("前"));
    grid.appendRows({{QString(), longText, QStringLiteral("后")}});
    // A copy taken before a row grows at its end keeps the row as it was.
    const ReportTable before = grid.table();
    grid.setTextMatrix(2, 7, longText);
    EXPECT_EQ(grid.TextMatrix(2, 5), longText);
    EXPECT_EQ(grid.TextMatrix(2, 6), QStringLiteral("后"));
    EXPECT_EQ(grid.TextMatrix(2, 7), longText);
    EXPECT_EQ(before.text(2, 7), QString());
    EXPECT_EQ(before.text(2, 6), QStringLiteral("后"));
    EXPECT_EQ(grid.TextMatrix(2, 4), QStringLiteral("前"));
    EXPECT_EQ(grid.TextMatrix(4, 1), longText);
    EXPECT_EQ(grid.TextMatrix(4, 2), QStringLiteral("后"));

    grid.setRows(2);
    grid.setRows(5);
    EXPECT_EQ(grid.TextMatrix(3, 70), QString()) << "a row dropped and re-added starts empty";
    EXPECT_EQ(grid.TextMatrix(1, 0), QStringLiteral("0"));

    EXPECT_THROW(grid.TextMatrix(5, 0), RuntimeError);
    EXPECT_THROW(grid.setTextMatrix(0, 71, QStringLiteral("x")), RuntimeError);
    EXPECT_THROW(grid.setRows(0), RuntimeError);
}

TEST(FlexGrid, BulkAppendAndPlainGrowthBothReachTheView)
{
    FlexGrid grid;
    grid.setFormatString(QStringLiteral("a|b|c"));
    grid.setRows(1);
    QCoreApplication::processEvents();
    QSignalSpy inserted(grid.gridModel(), &QAbstractItemModel::rowsInserted);

    grid.appendRows({{QStringLiteral("1"), QString(), QStringLiteral("3")},
                     {QStringLiteral("4"), QStringLiteral("5"), QStringLiteral("6"),
                      QStringLiteral("beyond the last column")}});
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.TextMatrix(1, 2), QStringLiteral("3"));
    EXPECT_EQ(shown(grid, 2, 1), QStringLiteral("5"));

    for (int i = 0; i < 500; ++i) {
        grid.setRows(grid.Rows() + 1);
        grid.setTextMatrix(grid.Rows() - 1, 0, QString::number(i));
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(inserted.size(), 2) << "one notice for the whole fill";
    EXPECT_EQ(grid.gridModel()->rowCount(), grid.Rows() - 1);
    EXPECT_EQ(shown(grid, grid.Rows() - 1, 0), QStringLiteral("499"));
}

TEST(FlexGrid, RedrawOffHoldsEveryNoticeUntilSwitchedOn)
{
    FlexGrid grid;
    grid.setCols(4);
    grid.setRows(3);
    QCoreApplication::processEvents();
    QSignalSpy inserted(grid.gridModel(), &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(grid.gridModel(), &QAbstractItemModel::dataChanged);

    grid.setRedraw(false);
    grid.setTextMatrix(1, 1, QStringLiteral("x"));
    grid.setRows(10);
    grid.setCellBackColor(2, 3, Qt::red);
    QCoreApplication::processEvents();
    EXPECT_TRUE(inserted.isEmpty());
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_EQ(grid.gridModel()->rowCount(), 2);

    grid.setRedraw(true);
    EXPECT_EQ(inserted.size(), 1);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(grid.gridModel()->rowCount(), 9);
    const QModelIndex topLeft = changed[0][0].toModelIndex();
    const QModelIndex bottomRight = changed[0][1].toModelIndex();
    EXPECT_LE(topLeft.row(), 0);
    EXPECT_GE(bottomRight.row(), 1);
    EXPECT_GE(bottomRight.column(), 3);
}

TEST(FlexGrid, CurrentCellBackColorShowsAsBackground)
{
    FlexGrid grid;
    grid.setCols(5);
    grid.setRows(6);
    const QColor mint(0xD0, 0xFF, 0xFD);
    grid.setRow(3);
    for (int col = 1; col < grid.Cols(); ++col) {
        grid.setCol(col);
        grid.setCellBackColor(mint);
    }
    QCoreApplication::processEvents();
    for (int col = 1; col < grid.Cols(); ++col) {
        EXPECT_EQ(shown(grid, 3, col, Qt::BackgroundRole).value<QColor>(), mint);
        EXPECT_EQ(grid.cellBackColor(3, col), mint);
    }
    EXPECT_NE(shown(grid, 3, 0, Qt::BackgroundRole).value<QColor>(), mint);
    EXPECT_EQ(grid.cellBackColor(4, 1), grid.palette().color(QPalette::Base));

    grid.setRows(2);
    grid.setRows(6);
    EXPECT_EQ(grid.cellBackColor(3, 1), grid.palette().color(QPalette::Base));
}

TEST(FlexGrid, TwoFixedRowsFormTheHeader)
{
    FlexGrid grid;
    grid.setCols(2);
    grid.setRows(4);
    grid.setFixedRows(2);
    grid.setTextMatrix(0, 0, QStringLiteral("金额"));
    grid.setTextMatrix(1, 0, QStringLiteral("本月"));
    grid.setTextMatrix(2, 0, QStringLiteral("12.5"));
    QCoreApplication::processEvents();
    EXPECT_EQ(grid.gridModel()->rowCount(), 2);
    EXPECT_EQ(grid.gridModel()->headerData(0, Qt::Horizontal).toString(),
              QStringLiteral("金额\n本月"));
    EXPECT_EQ(shown(grid, 2, 0), QStringLiteral("12.5"));
    const auto align = shown(grid, 2, 0, Qt::TextAlignmentRole).value<Qt::Alignment>();
    EXPECT_TRUE(align & Qt::AlignRight) << "general alignment puts numbers right";
}

TEST(FlexGrid, ModelStaysConsistentThroughReshaping)
{
    FlexGrid grid;
    QAbstractItemModelTester tester(grid.gridModel(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    grid.setFormatString(QStringLiteral("a|<b|>c"));
    for (int round = 0; round < 3; ++round) {
        grid.setRows(1);
        for (int r = 1; r <= 20; ++r) {
            grid.setRows(r + 1);
            grid.setTextMatrix(r, r % 3, QString::number(r));
        }
        QCoreApplication::processEvents();
        grid.setCols(5 - round);
        grid.setRedraw(false);
        grid.setRows(4);
        grid.setCellBackColor(2, 1, Qt::green);
        grid.setRedraw(true);
    }
    grid.setFixedRows(2);
    grid.appendRows({{QStringLiteral("x")}});
    EXPECT_EQ(grid.gridModel()->rowCount(), grid.Rows() - 2);
}

TEST(FlexGrid, ClicksSetTheCurrentCell)
{
    FlexGrid grid;
    grid.setFormatString(QStringLiteral("a|b|c"));
    grid.setRows(6);
    grid.resize(400, 300);
    grid.show();
    QCoreApplication::processEvents();
    QSignalSpy clicks(&grid, &FlexGrid::Click);
    QSignalSpy doubleClicks(&grid, &FlexGrid::DblClick);

    const QModelIndex cell = grid.gridModel()->index(2, 1); // grid row 3
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_EQ(clicks.size(), 1);

    grid.setCol(0);
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    EXPECT_EQ(grid.Col(), 1);
    EXPECT_EQ(doubleClicks.size(), 1);

    const int x = grid.horizontalHeader()->sectionViewportPosition(2) + 5;
    QTest::mouseClick(grid.horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(x, 5));
    EXPECT_EQ(grid.Col(), 2);
}

TEST(FlexGrid, SizesAreTwipsAtTheWidgetDpi)
{
    FlexGrid grid;
    grid.setCols(3);
    QCoreApplication::processEvents();
    grid.setColWidth(1, 1440);
    EXPECT_EQ(grid.columnWidth(1), grid.logicalDpiX());
    EXPECT_EQ(grid.ColWidth(1), 1440);
    grid.setColWidth(2, 0);
    EXPECT_EQ(grid.columnWidth(2), 0);

    QFont window(QStringLiteral("微软雅黑"));
    window.setPointSizeF(10.5);
    const QString text = QStringLiteral("计费周期起始日期 2024");
    const double expected =
        QFontMetricsF(window, &grid).horizontalAdvance(text) * 1440.0 / grid.logicalDpiX();
    EXPECT_NEAR(grid.TextWidth(text, window), expected, 0.01);
    EXPECT_NEAR(grid.TextWidth(text), measured(grid, text), 0.01);
}

TEST(FlexGrid, ColumnsDroppedAndReAddedStartFresh)
{
    FlexGrid grid;
    grid.setCols(5);
    grid.setRows(3);
    QCoreApplication::processEvents();
    grid.setColWidth(4, 3000);
    grid.setColAlignment(4, FlexAlign::RightCenter);
    grid.setTextMatrix(1, 4, QStringLiteral("x"));
    grid.setCols(3);
    grid.setCols(5);
    QCoreApplication::processEvents();
    EXPECT_EQ(grid.ColWidth(4), grid.ColWidth(3));
    EXPECT_EQ(grid.columnWidth(4), grid.twipsToPixelsX(grid.ColWidth(4)));
    EXPECT_EQ(grid.ColAlignment(4), FlexAlign::General);
    EXPECT_EQ(grid.TextMatrix(1, 4), QString());
    EXPECT_EQ(shown(grid, 1, 4), QString());
}
