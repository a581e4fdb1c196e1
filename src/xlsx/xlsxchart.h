#pragma once

#include "xlsx/xlsxsheetlayout.h"
#include "xlsx/xlsxvocabulary.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <vector>

namespace quorvale::xlsx {

// One series of a chart, bound to cells of the chart's own sheet. The texts
// and numbers are what those cells hold now: a reader that draws before it
// calculates shows them.
struct ChartSeries {
    QString name;
    CellRange nameCell;
    QStringList categories;
    CellRange categoryCells;
    QList<double> values;
    CellRange valueCells;
};

// A native chart placed over a block of cells.
struct Chart {
    enum class Kind { Bar, Column, StackedColumn };
    Kind kind = Kind::Column;
    QString title;
    std::vector<ChartSeries> series;
    CellRange area; // the cells it covers, 1-based as every range
};

class Package;

// Puts a new sheet's charts into the package: a drawing part, its charts,
// both relationships parts and the content types (added to contentTypes);
// returns the sheet's relationship id of the drawing.
QByteArray putSheetCharts(Package &package, QByteArray &contentTypes, const QString &sheetPart,
                          const QString &sheetName, const std::vector<Chart> &charts,
                          const Vocabulary &vocabulary);

// The chart part (c:chartSpace) with its series' formulas on `sheetName`,
// in the drawing vocabulary that goes with the workbook's.
QByteArray chartPartXml(const Chart &chart, const QString &sheetName, const Vocabulary &vocabulary);
// The drawing part that places the charts; chart i is relationship "rId{i+1}".
QByteArray drawingPartXml(const std::vector<Chart> &charts, const Vocabulary &vocabulary);

} // namespace quorvale::xlsx
