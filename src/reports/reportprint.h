#pragma once

#include "output/gridprint.h"

#include <QDate>
#include <QFont>
#include <QString>

namespace quorvale {

class FlexGrid;
struct ReportDefinition;

// The print branch's titles, the same in every report window: "(office)"
// followed by "收款日报表" (a leftover of the first report, kept), and the
// date range line.
PrintTitles reportPrintTitles(const QString &officeName, const QDate &from, const QDate &to);

// The report windows' font: the application's font in 微软雅黑.
QFont reportWindowFont(const QFont &base);

// Gives a grid that no window holds the font and heading the report's window
// gives its own grid, so that widths (and so exported widths) come out alike.
void prepareReportGrid(const ReportDefinition &definition, FlexGrid &grid);

} // namespace quorvale
