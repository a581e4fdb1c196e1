#include "reports/reportprint.h"

#include "reports/reportdefinition.h"
#include "runtime/vb.h"
#include "ui/flexgrid.h"

#include <QApplication>

namespace quorvale {

namespace {
const QString kWindowFont = QStringLiteral("微软雅黑");
const QString kPrintTitleSuffix = QStringLiteral("收款日报表");
const QString kDateRange = QStringLiteral("日期范围:");
} // namespace

PrintTitles reportPrintTitles(const QString &officeName, const QDate &from, const QDate &to)
{
    PrintTitles titles;
    titles.title = QLatin1Char('(') + officeName + QLatin1Char(')') + kPrintTitleSuffix;
    titles.secondLine =
        kDateRange + vbrt::formatChineseDate(from) + QLatin1Char('-') + vbrt::formatChineseDate(to);
    return titles;
}

QFont reportWindowFont(const QFont &base)
{
    QFont font = base;
    font.setFamily(kWindowFont);
    return font;
}

void prepareReportGrid(const ReportDefinition &definition, FlexGrid &grid)
{
    grid.setFont(reportWindowFont(QApplication::font()));
    if (definition.headerAtLoad)
        grid.setRows(1);
    grid.setFormatString(definition.formatString);
}

} // namespace quorvale
