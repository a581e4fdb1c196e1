#pragma once

#include "output/exportoptions.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace quorvale {

class ReportTable;
namespace xlsx {
class Workbook;
}

// Writes the chosen columns of the table (in the given order, packed to the
// left) into options.sheet of the workbook at options.path and saves it.
// Every row is written, row 0 being the header; the workbook is written in
// one piece or not at all, locked against other writers (WorkbookTarget).
// Errors are RuntimeError with a description fit for the user.
//
// The formatting follows the export's steps in order: row 1 centred, borders
// round the written block, row 1 in 14 pt, rows 2 and 3 in 10 pt, then the
// data block (rows 2 to the last written row, written columns only) in
// 10.5 pt, so rows 2 and 3 keep 10 pt only outside the written columns.
// A table with two fixed rows gets its header merged (see headerMerges).
struct WrittenWorkbook {
    QString path;      // NAME.xlsx where options.path named an old NAME.xls
    QStringList notes; // the conversion's note, then the write's warnings
};
WrittenWorkbook writeTableToWorkbook(const ReportTable &table, const QVector<int> &chosenColumns,
                                     const ExportOptions &options);

// The same into a workbook already open (one save for several sheets). A
// sheet that exists is rewritten: the block an earlier export wrote there is
// wiped first, cells outside it are kept. Throws xlsx::Error.
void writeTableToSheet(xlsx::Workbook &book, const ReportTable &table,
                       const QVector<int> &chosenColumns, ExportVariant variant,
                       const QString &sheet);

// The file a chosen name stands for: an existing file as it is; a new name
// without extension, or with the legacy ".xls" that could only hold the old
// binary format, gets ".xlsx" since that is what is written.
QString exportTargetPath(const QString &chosen);
// Only workbook names are written: .xlsx, .xlsm (macro-enabled) and the
// templates .xltx and .xltm, and an existing .xls (converted); anything else
// (.csv, .txt) throws RuntimeError naming the accepted ones.
void checkWorkbookName(const QString &path);
// The sentence the export says when it writes another file than the chosen
// name (a new .xls written as .xlsx); empty when they are the same.
QString renamedTargetNote(const QString &chosen, const QString &written);

} // namespace quorvale
