#pragma once

// Library table: a report's table as plain data, below every view of it,
// every writer and every printer. Qt Core and the runtime's text widths.

#include "runtime/textwidth.h"

#include <QString>
#include <QStringList>
#include <QVector>
#include <vector>

namespace quorvale {

// Column alignment values as the windows set and read them.
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

// A report's table: rows of cell texts, the fixed (heading) rows counted in,
// column widths in twips and alignments. Rows are numbered from 0 with the
// fixed rows: rows() == 1 is a table of its heading only. The compute
// procedures fill it; a grid shows it; export and print read it. What is a
// view's (the current row, drawing, colours) is kept by the view.
//
// Each row's texts are kept packed in one string, and only filled cells take
// room, so a hundred thousand rows of a wide report stay small.
// Out-of-range rows and columns throw RuntimeError, as the control did.
class ReportTable {
public:
    // Two rows and two columns, one of each fixed, as the control starts.
    ReportTable();

    int rows() const { return int(m_rows.size()); }
    void setRows(int rows);
    int cols() const { return m_cols; }
    void setCols(int cols);
    int fixedRows() const { return m_fixedRows; }
    void setFixedRows(int rows); // 0, 1 or 2
    int fixedCols() const { return m_fixedCols; }
    void setFixedCols(int cols);

    QString text(int row, int col) const;
    // Every cell of the row in one pass ("" where none was set), into a list
    // the caller keeps from row to row: reading a wide table row by row
    // costs rows × columns, where text() for each cell costs columns more.
    void readRow(int row, QStringList &texts) const;
    void setText(int row, int col, const QString &text);
    // Appends whole rows below the last one; texts beyond cols() are dropped.
    void appendRows(const QVector<QStringList> &rows);

    int colWidth(int col) const; // twips
    void setColWidth(int col, int twips); // negative restores the default width
    int alignment(int col) const;
    void setAlignment(int col, int alignment);

    // "col0|<col1|>col2|^col3": sets cols, the row-0 texts (trailing blanks
    // kept), the alignments, and each column's width from its text.
    void setFormatString(const QString &format, const TextWidthFn &textWidth);
    QString formatString() const { return m_formatString; }

private:
    void checkRow(int row) const;
    void checkCol(int col) const;

    std::vector<QString> m_rows; // per row: (column, length, text) runs, filled cells only
    int m_cols = 2;
    int m_fixedRows = 1;
    int m_fixedCols = 1;
    QVector<int> m_widths;
    QVector<int> m_alignments;
    QString m_formatString;
};

} // namespace quorvale
