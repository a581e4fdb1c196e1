#pragma once

#include "reports/financereportkind.h"

#include <QString>

namespace quorvale {

// How a finance fill widens the columns after each appended row.
enum class ColumnFit {
    // Measure the cell at the grid's current Row, which the procedure never
    // sets; widen to w + 100 when w + 80 exceeds the width.
    CurrentRow,
    // Make the new row current, measure it; widen to w + 90 when w + 90
    // exceeds the width. Drawing is suspended while the rows arrive.
    NewRow,
};

// What one finance report has of its own; everything else is shared.
struct FinanceReportTraits {
    FinanceReportKind kind;
    QString windowName;
    FeeCategory category;
    bool advance;       // advance receipts: receipt-date pickers, 20 columns
    bool parking;       // rented-space and owned-space statements
    QString heading;    // the grid's FormatString
    bool headingAtLoad; // false: the heading is the window's fixed design
    QString sheetName;  // the export's template (sheet) name
    QString titleSuffix;
    ColumnFit fit;
    bool printWithPickers; // print line dated DTPicker1 - DTPicker2, else today
};

const FinanceReportTraits &financeTraits(FinanceReportKind kind);

} // namespace quorvale
