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

// The format string reaches the grid's heading at the grid's own text widths.
TEST(FlexGrid, FormatStringIsShownInTheHeadingAtTheGridsWidths)
{
    FlexGrid grid;
    grid.setRows(1);
    grid.setFormatString("房号|<收费对象类型|>应收金额          ");
    QCoreApplication::processEvents();
    ASSERT_EQ(grid.gridModel()->columnCount(), 3);
    EXPECT_EQ(grid.gridModel()->headerData(1, Qt::Horizontal).toString(), "收费对象类型");
    for (int col = 0; col < 3; ++col) {
        EXPECT_GE(grid.ColWidth(col), measured(grid, grid.TextMatrix(0, col)));
        EXPECT_EQ(grid.columnWidth(col), grid.twipsToPixelsX(grid.ColWidth(col)));
    }
}

// A compute fills the window's table without the grid and then tells it:
// the grid shows the new rows, keeps the colours of the rows above the
// first changed one, and keeps its current row inside the table.
TEST(FlexGrid, ATableChangedBehindItIsShownAgain)
{
    ReportTable table;
    table.setCols(3);
    table.setRows(6);
    FlexGrid grid(table);
    QAbstractItemModelTester tester(grid.gridModel(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QColor mint(0xD0, 0xFF, 0xFD);
    grid.setCellBackColor(1, 1, mint);
    grid.setCellBackColor(4, 1, mint);
    grid.setRow(5);
    QCoreApplication::processEvents();

    table.setRows(2);
    table.appendRows(QVector<QStringList>(5, {"新", "行"}));
    table.setColWidth(2, 2880);
    grid.tableChanged(2);
    EXPECT_EQ(grid.gridModel()->rowCount(), 6);
    EXPECT_EQ(shown(grid, 6, 1), QStringLiteral("行"));
    EXPECT_EQ(grid.cellBackColor(1, 1), mint);
    EXPECT_EQ(grid.cellBackColor(4, 1), grid.palette().color(QPalette::Base));
    EXPECT_EQ(grid.columnWidth(2), grid.twipsToPixelsX(2880));
    EXPECT_EQ(grid.Row(), 5);

    table.setRows(3);
    grid.tableChanged(1);
    EXPECT_EQ(grid.gridModel()->rowCount(), 2);
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_EQ(grid.cellBackColor(1, 1), grid.palette().color(QPalette::Base));
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
