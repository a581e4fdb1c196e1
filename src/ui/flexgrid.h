#pragma once

// Library ui: classic controls on Qt Widgets: the flex grid and its model
// in twips, the twips printer with its PDF and preview targets, printer
// fonts and the message box with its test responder. It depends on runtime
// only and knows nothing of databases, workbooks or reports.

#include <QColor>
#include <QFont>
#include <QStringList>
#include <QTableView>
#include <QVector>
#include <memory>

namespace quorvale {

class FlexGridModel;
class TextWidthCache;

// Flex-grid alignment values as the windows set and read them.
namespace FlexAlign {
inline constexpr int LeftTop = 0;
inline constexpr int LeftCenter = 1;
inline constexpr int LeftBottom = 2;
inline constexpr int CenterTop = 3;
inline constexpr int CenterCenter = 4;
inline constexpr int CenterBottom = 5;
inline constexpr int RightTop = 6;
inline constexpr int RightCenter = 7;
inline constexpr int RightBottom = 8;
inline constexpr int General = 9; // text left, numbers right
} // namespace FlexAlign

// The flex-grid control of the report and export windows. Row and column
// numbers count the fixed (header) rows: Rows() == 1 is a header-only grid,
// TextMatrix(0, c) is the heading of column c. The fixed rows are shown in
// the horizontal header so they never scroll away. Sizes are in twips
// (1440 per inch) and converted at the widget's logical DPI.
// Range errors throw RuntimeError, as the control raised them.
class FlexGrid : public QTableView {
    Q_OBJECT
  public:
    explicit FlexGrid(QWidget *parent = nullptr);
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
    void checkCol(int col) const;

    FlexGridModel *m_model;
    QVector<int> m_colTwips;
    QString m_formatString;
    int m_row = 0;
    int m_col = 0;
    bool m_redraw = true;
    bool m_settingWidths = false;
    mutable std::unique_ptr<TextWidthCache> m_gridFontWidths;
    mutable std::unique_ptr<TextWidthCache> m_otherFontWidths;
};

} // namespace quorvale
