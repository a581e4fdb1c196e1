#pragma once

#include "output/officeoverview.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvale {

// An overview laid out as cells, the one source of what its sheet shows,
// what its charts are bound to and what its printout draws.
struct OverviewCells {
    // A bordered table: its column heading row and the rows below it.
    struct Block {
        int headingRow, lastRow, columns;
    };
    // A chart of one or more series down columns of the rows, categories
    // down another; each series is named by its heading cell.
    struct Chart {
        enum class Kind { Bar, Column, StackedColumn };
        Kind kind;
        QString title;
        int headingRow, firstRow, lastRow;
        int categoryColumn;
        QList<int> valueColumns;
    };

    QStringList heading;     // the heading lines, row 1 on, merged across the tables
    QList<QStringList> rows; // every row from row 1 (heading rows empty), as typed
    QList<int> captionRows;
    QList<Block> blocks;
    QList<Chart> charts;
    int columns = 0;

    // 1-based, as the sheet counts.
    QString text(int row, int col) const; // without a text's leading apostrophe
    double number(int row, int col) const;
};

// One office's overview: arrears by fee item, by age and the ten largest,
// advance receipts by fee item; a bar chart by fee item and a column chart
// by age.
OverviewCells officeOverviewCells(const OfficeOverview &overview);

// The company's: one row per office (outstanding by age, the total, of which
// over twelve months, advance receipts) and a total; a stacked column chart
// by office and age.
OverviewCells companyOverviewCells(const QList<OfficeOverview> &offices,
                                   const QStringList &heading);

} // namespace quorvale
