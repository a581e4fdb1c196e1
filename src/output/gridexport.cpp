#include "output/gridexport.h"

#include "output/headermerge.h"
#include "output/legacyconversion.h"
#include "output/workbooktarget.h"
#include "table/reporttable.h"
#include "runtime/outputset.h"
#include "runtime/runtimeerror.h"
#include "runtime/vb.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace quorvale {

namespace {

constexpr double kHeaderFontSize = 14;
constexpr double kSecondRowsFontSize = 10;
constexpr double kDataFontSize = 10.5;
constexpr int kContinuousLine = 1;
// The grid keeps widths in twips; the sheet's character units are taken as a hundredth.
constexpr double kTwipsPerWidthUnit = 100.0;

xlsx::Worksheet &targetSheet(xlsx::Workbook &book, const QString &name)
{
    if (xlsx::Worksheet *sheet = book.worksheet(name))
        return *sheet;
    return book.addWorksheet(name);
}

} // namespace

void writeTableToSheet(xlsx::Workbook &book, const ReportTable &table,
                       const QVector<int> &chosenColumns, ExportVariant variant,
                       const QString &sheetName)
{
    xlsx::Worksheet &sheet = targetSheet(book, sheetName);
    sheet.setVisible(true);

    const int columns = int(chosenColumns.size());
    const int rows = table.rows();
    // A rewritten sheet shows exactly the new rows: the block an earlier
    // export wrote (its header's columns, down to its last row) and the
    // block written now are wiped first, with whatever lies on them
    // (merges, links); anything the user added to the right of it stays.
    // A sheet its owner protected in Excel takes the export only where its
    // cells are unlocked, as Excel itself would.
    if (!sheet.isNew()) {
        const xlsx::Worksheet::Extent before = sheet.originalExtent();
        const int lastRow = std::max({before.lastRow, rows, 1});
        const int lastColumn = std::max({columns, before.headerColumns, 1});
        sheet.checkUnlocked(1, 1, lastRow, lastColumn);
        sheet.clearRange(1, 1, lastRow, lastColumn);
    }

    for (int k = 1; k <= columns; ++k)
        sheet.setColumnWidth(k, table.colWidth(chosenColumns[k - 1]) / kTwipsPerWidthUnit);

    // The sheet writes its rows out as they come, so the formatting steps
    // are given first; the result is that of the steps in their own order.
    sheet.setRowHorizontalAlignment(1, xlsx::Align::HCenter);
    sheet.setRowVerticalAlignment(1, xlsx::Align::VDistributed);
    if (columns > 0 && rows > 0)
        sheet.setRangeBorders(1, 1, rows, columns, kContinuousLine);
    sheet.setRowFontSize(1, kHeaderFontSize);
    sheet.setRowFontSize(2, kSecondRowsFontSize);
    sheet.setRowFontSize(3, kSecondRowsFontSize);
    if (columns > 0 && rows > 1)
        sheet.setRangeFontSize(2, 1, rows, columns, kDataFontSize);

    if (table.fixedRows() == 2 && rows >= 2) {
        QStringList upper;
        QStringList lower;
        for (int i : chosenColumns) {
            upper.append(table.text(0, i));
            lower.append(table.text(1, i));
        }
        for (const HeaderMerge &m : headerMerges(upper, lower))
            sheet.merge(m.row1, m.col1, m.row2, m.col2);
    }

    const int textColumn = textColumnOf(variant);
    QStringList cells;
    for (int r = 0; r < rows; ++r) {
        table.readRow(r, cells);
        for (int k = 1; k <= columns; ++k) {
            const int i = chosenColumns[k - 1];
            QString text = cells[i];
            if (i == textColumn && r != 0 && !vbrt::Trim(text).isEmpty())
                text.prepend(QLatin1Char('\''));
            sheet.setCellValue(r + 1, k, text);
        }
    }
}

WrittenWorkbook writeTableToWorkbook(const ReportTable &table, const QVector<int> &chosenColumns,
                                     const ExportOptions &options)
{
    WorkbookTarget target(options.path);
    target.writeTable(table, chosenColumns, options.variant, options.sheet);
    OutputSet outputs;
    target.stage(outputs);
    outputs.commit();
    WrittenWorkbook written{target.path(), target.warnings()};
    if (!target.note().isEmpty())
        written.notes.prepend(target.note());
    return written;
}

void checkWorkbookName(const QString &path)
{
    static const QStringList accepted{QStringLiteral("xlsx"), QStringLiteral("xlsm"),
                                      QStringLiteral("xltx"), QStringLiteral("xltm")};
    if (!accepted.contains(QFileInfo(path).suffix().toLower()) && !LegacyConversion::applies(path))
        throw RuntimeError(ErrorNumber::BadFileName,
                           QStringLiteral("“%1”不是 Excel 工作簿的文件名：只能输出到 .xlsx、.xlsm、"
                                          ".xltx 或 .xltm 文件（新文件名以 .xls 结尾或没有扩展名"
                                          "时，写成 .xlsx 文件）")
                               .arg(QDir::toNativeSeparators(path)));
}

QString renamedTargetNote(const QString &chosen, const QString &written)
{
    if (chosen == written)
        return {};
    const QString shown = QDir::toNativeSeparators(written);
    if (QFileInfo(chosen).suffix().compare(QStringLiteral("xls"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("已保存为“%1”：.xls 是 Excel 97-2003 的旧格式，输出的是 .xlsx 格式的"
                              "工作簿")
            .arg(shown);
    return QStringLiteral("已保存为“%1”").arg(shown);
}

QString exportTargetPath(const QString &chosen)
{
    const QFileInfo info(chosen);
    if (chosen.isEmpty() || info.exists())
        return chosen;
    const QString suffix = info.suffix();
    if (suffix.isEmpty())
        return chosen + (chosen.endsWith(QLatin1Char('.')) ? QStringLiteral("xlsx")
                                                           : QStringLiteral(".xlsx"));
    if (suffix.compare(QStringLiteral("xls"), Qt::CaseInsensitive) == 0)
        return chosen.left(chosen.size() - suffix.size()) + QStringLiteral("xlsx");
    return chosen;
}

} // namespace quorvale
