#pragma once

// Library xlsx: an Office Open XML workbook editor. It opens or creates a
// workbook, edits cells, styles and sheets in memory and saves the whole
// package atomically, copying every part it does not touch byte for byte.
// It needs Qt Core and zlib only and must not depend on any other library
// of the program; its failures are xlsx::Error.

#include "xlsx/xlsxerror.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

class QIODevice;

namespace quorvale::xlsx {

class Package;
struct Chart;
class SheetStream;
class StyleSheet;
struct SheetLayout;
class Worksheet;
class WorkbookXml;

// An .xlsx workbook edited in memory and written out by write(). Parts the
// export does not touch are carried over byte-for-byte. Errors are
// xlsx::Error with a description fit for the user.
class Workbook {
public:
    // A new workbook with one sheet "Sheet1"; nothing is written until write().
    // Its type follows the path's extension: .xlsm is macro-enabled, .xltx
    // and .xltm are templates, anything else a plain workbook.
    static std::unique_ptr<Workbook> create(const QString &path);
    // Fails for a missing file, a legacy .xls, a corrupt or foreign file.
    static std::unique_ptr<Workbook> open(const QString &path);
    // The workbook read from a copy (a converted one), to be saved as path.
    static std::unique_ptr<Workbook> openCopy(const QString &copy, const QString &path);
    ~Workbook();
    Workbook(const Workbook &) = delete;
    Workbook &operator=(const Workbook &) = delete;

    QString path() const { return m_path; }
    // Whether date serials count from 1904 (workbooks made on old Macs).
    bool usesDate1904() const;
    // What was written differently from what was asked (a text cut to
    // Excel's cell limit), one sentence each, naming sheet, row and column.
    const QStringList &warnings() const { return m_warnings; }

    // Worksheets only (chart sheets are not counted), in tab order; 1-based.
    int worksheetCount() const { return int(m_sheets.size()); }
    Worksheet &worksheet(int index);
    // Name match ignores case, as Excel does; nullptr when there is none.
    Worksheet *worksheet(const QString &name);
    // Inserted right after the last worksheet, named "SheetN" until setName().
    // Refused when the owner locked the workbook's structure in Excel.
    Worksheet &addWorksheetAfterLast();
    // The same, named; the name is checked before anything is added.
    Worksheet &addWorksheet(const QString &name);

    // Puts the charts of a new sheet into the package; returns the sheet's
    // relationship id of their drawing.
    QByteArray addCharts(const Worksheet &sheet, const std::vector<Chart> &charts);

    // Takes the sheet out of the workbook with its drawing and charts.
    // Refused when the owner locked the workbook's structure.
    void removeWorksheet(Worksheet &sheet);
    // Puts the sheet first in the tab order.
    void moveToFront(Worksheet &sheet);

    // Writes the rest of the sheet's part now; the sheet takes no more
    // writes afterwards. (Its rows went out, compressed, as they were
    // written; a large part waits for the save in an anonymous temporary
    // file.)
    void finishSheet(Worksheet &sheet);

    // Writes the whole workbook into a device that the caller makes safe
    // (a temporary file it syncs and renames with other outputs).
    void write(QIODevice &out);

    // Internal plumbing for Worksheet.
    bool isNameTaken(const QString &name, const Worksheet *except) const;
    void sheetRenamed(Worksheet &sheet);
    void sheetVisibilityChanged(Worksheet &sheet);
    QByteArray originalPart(const Worksheet &sheet) const;
    const StyleSheet &styles() const { return *m_styles; }
    std::unique_ptr<SheetStream> openStream(const Worksheet &sheet, SheetLayout &layout);
    void warn(const QString &text);

private:
    Workbook();
    void load(const QString &readFrom = {});
    void loadNew();
    void readParts();
    void prepareParts();
    void checkSharedStrings();
    // Lists a new part in the workbook's relationships and the content
    // types; returns its relationship id.
    QByteArray addPart(const QString &part, QByteArrayView relType, const char *contentType);
    void dropCalcChain();
    QString uniqueDefaultName() const;
    void refuseWhenStructureLocked(const QString &sheetName) const;

    QString m_path;
    std::unique_ptr<Package> m_package;
    std::unique_ptr<StyleSheet> m_styles;
    std::vector<std::unique_ptr<Worksheet>> m_sheets;
    QString m_workbookPart;     // e.g. "xl/workbook.xml"
    QString m_workbookRelsPart; // e.g. "xl/_rels/workbook.xml.rels"
    QString m_stylesPart;
    QString m_stringsPart;
    QString m_calcChainPart;
    QHash<const Worksheet *, QByteArray> m_relIds;
    QStringList m_otherSheetNames; // chart and dialog sheets: names taken, not worksheets
    std::unique_ptr<WorkbookXml> m_workbookXml;
    QStringList m_warnings;
    QByteArray m_relsXml;
    QByteArray m_contentTypesXml;
    bool m_partsDirty = false;
    bool m_formulasOverwritten = false;
};

} // namespace quorvale::xlsx
