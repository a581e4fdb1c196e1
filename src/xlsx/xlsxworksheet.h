#pragma once

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

namespace quorvale::xlsx {

class Workbook;
class SheetStream;
struct SheetLayout;
struct RowCell;
struct Chart;

// Excel's classic alignment numbers as the automation layer accepts them:
// the small numbers are the old ALIGNMENT codes (horizontal 1 general,
// 2 left, 3 center, 4 right, 5 fill, 6 justify, 7 center across selection,
// 8 distributed; vertical 1 top, 2 center, 3 bottom, 4 justify,
// 5 distributed), the negative ones the xl* constants (-4108 center, ...).
namespace Align {
inline constexpr int HCenter = 3;
inline constexpr int VDistributed = 5;
inline constexpr int XlCenter = -4108;
} // namespace Align

// One worksheet of a Workbook. Rows and columns are 1-based. Cells are
// written top to bottom: a row goes out to the sheet's part (merged into its
// existing cells and compressed) as soon as a later row is written, so a
// large sheet is never held whole. Widths, formats, merges and cleared
// ranges therefore come first, before any cell; either order breach throws.
class Worksheet {
public:
    Worksheet(Workbook &book, QString name, QString partName, bool isNew);
    ~Worksheet();
    Worksheet(const Worksheet &) = delete;
    Worksheet &operator=(const Worksheet &) = delete;

    QString name() const { return m_name; }
    // Excel's rules: 1-31 characters, none of []:*?/\, no apostrophe at either
    // end, unique in the workbook ignoring case.
    void setName(const QString &name);
    [[noreturn]] static void nameTaken(const QString &name);
    static void checkName(const QString &name); // throws for a name Excel refuses
    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);

    // Interprets the text as Excel interprets typed input: numbers and ISO
    // dates become values, a leading apostrophe keeps the rest as text, an
    // empty text clears the cell. Rows in ascending order; within the row
    // being written, any order.
    void setCellValue(int row, int col, const QString &text);
    // Width in Excel's character units (the classic grid passes twips / 100).
    void setColumnWidth(int col, double width);
    void setRowHorizontalAlignment(int row, int value);
    void setRowVerticalAlignment(int row, int value);
    void setRowFontSize(int row, double size);
    void setRangeFontSize(int row1, int col1, int row2, int col2, double size);
    // Borders.LineStyle: 1 (continuous) draws thin lines round every cell of
    // the range; -4142 (none) removes them.
    void setRangeBorders(int row1, int col1, int row2, int col2, int lineStyle = 1);
    // Keeps the top-left value and clears the others, as Excel does.
    void merge(int row1, int col1, int row2, int col2);
    // Wipes the existing cells of the range (values, formats, merges) before
    // anything written now goes in; cells outside it are kept.
    void clearRange(int row1, int col1, int row2, int col2);
    // Native charts over the sheet's cells; a new sheet only, before its cells.
    void addCharts(const std::vector<Chart> &charts);
    // Printed turned, every column on one page wide; a new sheet only.
    void setLandscapeOnePageWide();

    // Refuses, before anything is written, a range that Excel would not
    // let anyone change: the sheet is protected and a cell of it is locked.
    void checkUnlocked(int row1, int col1, int row2, int col2) const;

    // What the sheet held when it was opened: its last row with a value, and
    // how many cells of row 1, from column A on, hold a value (a header).
    struct Extent {
        int lastRow = 0;
        int headerColumns = 0;
    };
    Extent originalExtent() const;

    // Internal plumbing for Workbook.
    QString partName() const { return m_partName; }
    bool isNew() const { return m_isNew; }
    bool isModified() const;
    // Written into the package already (Workbook::finishSheet).
    bool isFinished() const { return m_finished; }
    // Writes what is left and puts the part into the package; true when a
    // formula cell was overwritten.
    bool finish();
    void setHiddenState(bool hidden) { m_visible = !hidden; }

private:
    void beforeCells(); // throws once cells have been written
    void writePendingRow();

    Workbook &m_book;
    QString m_name;
    QString m_partName;
    bool m_isNew;
    bool m_visible = true;
    bool m_finished = false;
    std::unique_ptr<SheetLayout> m_layout;
    std::unique_ptr<SheetStream> m_stream;
    int m_row = 0;                  // the row being written
    std::vector<RowCell> m_cells;   // its cells, ascending
    // What the sheet held when it was opened, read once: the part is
    // inflated for it, and again only to write the sheet.
    struct Original {
        Extent extent;
        bool protectedSheet = false;
    };
    const Original &original() const;
    mutable std::optional<Original> m_original;
};

} // namespace quorvale::xlsx
