#pragma once

// Library ui: classic controls on Qt Widgets: the flex grid (a view of a
// report table), the real printers and the print preview, the message box
// with its test responder, the application object. It depends on runtime and
// on the table library; it knows nothing of reports, databases or workbooks.

#include "table/reporttable.h"

#include <QColor>
#include <QFont>
#include <QStringList>
#include <QTableView>
#include <QVector>
#include <functional>
#include <memory>

namespace quorvale {

class FlexGridModel;
class TextWidthCache;
struct PrintLook;

// The flex-grid control of the report and export windows: a view of a
// ReportTable, its own or one its window owns, which keeps the cells,
// widths and alignments; the grid adds what is the screen's (the current
// cell, cell colours, drawing). Row and column numbers count the fixed (header)
// rows: Rows() == 1 is a header-only grid, TextMatrix(0, c) is the heading
// of column c. The fixed rows are shown in the horizontal header so they
// never scroll away. Sizes are in twips (1440 per inch) and converted at
// the widget's logical DPI. Range errors throw RuntimeError, as the
// control raised them.
class FlexGrid : public QTableView {
    Q_OBJECT
  public:
    explicit FlexGrid(QWidget *parent = nullptr); // shows a table of its own
    // Shows a table its window owns; the table outlives the grid.
    explicit FlexGrid(ReportTable &table, QWidget *parent = nullptr);
    ~FlexGrid() override;

    int Rows() const;
    void setRows(int rows);
    int Cols() const;
    void setCols(int cols);
    int FixedRows() const;
    void setFixedRows(int rows); // 0, 1 or 2
    int FixedCols() const;
    void setFixedCols(int cols); // column 0 drawn grey when 1

    QString TextMatrix(int row, int col) const;
    void setTextMatrix(int row, int col, const QString &text);

    // Appends whole rows below the last one; the views hear of them once.
    void appendRows(const QVector<QStringList> &rows);

    // "col0|<col1|>col2|^col3": sets Cols, the row-0 texts (trailing blanks
    // kept), the alignments and each column's width from its text.
    void setFormatString(const QString &format);
    QString FormatString() const;

    int ColWidth(int col) const;          // twips
    void setColWidth(int col, int twips); // negative restores the default width
    int RowHeight(int row) const;         // twips; all rows share one height
    int ColAlignment(int col) const;
    void setColAlignment(int col, int alignment);

    // Current cell: a click sets both; setting them never scrolls.
    int Row() const;
    void setRow(int row);
    int Col() const;
    void setCol(int col);

    // Background of the current cell (Row, Col) and of any cell.
    QColor CellBackColor() const;
    void setCellBackColor(const QColor &color);
    QColor cellBackColor(int row, int col) const; // window colour when never set
    void setCellBackColor(int row, int col, const QColor &color);

    // With redraw off, changes reach the screen only when it is switched on again.
    bool Redraw() const;
    void setRedraw(bool on);

    // Text widths in twips, measured at this grid's DPI; results are cached.
    double TextWidth(const QString &text) const; // in the grid's font
    double TextWidth(const QString &text, const QFont &font) const;

    int twipsToPixelsX(double twips) const;
    double pixelsToTwipsX(int pixels) const;

    // What the grid shows; export and print read it.
    const ReportTable &table() const { return m_table; }
    // The table was changed without the grid (a compute): it shows it again,
    // keeping what it holds for the rows above fromRow (their colours), and
    // keeps its current cell inside it.
    void tableChanged(int fromRow = 0);
    // Changes the table in one go and shows it again; colours stay where they were.
    void editTable(const std::function<void(ReportTable &table)> &edit);
    // Text widths in the grid's font, for the table's width rules.
    TextWidthFn textWidthFn() const;
    // The grid's font and row height, which a printout follows.
    PrintLook printLook() const;

    FlexGridModel *gridModel() const { return m_model; }

  Q_SIGNALS:
    void Click();
    void DblClick();

  protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void changeEvent(QEvent *event) override;

  private:
    void applyColumnWidths(int first, int last);
    void applyRowHeight();

    void clampCurrentCell();

    ReportTable m_ownTable;
    ReportTable &m_table;
    FlexGridModel *m_model;
    int m_row = 0;
    int m_col = 0;
    bool m_settingWidths = false;
    mutable std::unique_ptr<TextWidthCache> m_gridFontWidths;
    mutable std::unique_ptr<TextWidthCache> m_otherFontWidths;
};

} // namespace quorvale
