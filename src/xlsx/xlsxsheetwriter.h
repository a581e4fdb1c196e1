#pragma once

#include "xlsx/xlsxrowwriter.h"
#include "xlsx/xlsxsheetlayout.h"
#include "xlsx/xlsxstylesheet.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace quorvale::xlsx {

class ByteSink;
class ReplacedFormulas;
struct Vocabulary;

// Writes a worksheet part as its rows come: the sheet's original XML with
// the written cells, formats, widths and merges merged in. Rows, cells and
// elements that the export does not touch are copied as they were, except
// what would hide or contradict the written cells: merges and hyperlinks
// over them go, and a shared formula whose first cell was overwritten is
// spelt out in the cells that still use it. An array formula that the block
// cuts through is refused (Excel cannot change part of an array).
//
// begin() writes up to the sheet's rows, row() each written row in
// ascending order, end() the rest; nothing of a row is kept once written.
class SheetWriter {
public:
    // Rows that must pass through follow() even without written cells (a
    // table's header row), and the call that may change a row's cells
    // before it is written.
    struct RowHook {
        const std::vector<int> *rows = nullptr; // ascending
        std::function<void(int row, RowCells &cells)> follow;
    };

    SheetWriter(const SheetLayout &layout, StyleSheet &styles, QByteArray original,
                const Vocabulary &vocabulary, QString sheetName, RowHook hook);
    ~SheetWriter();
    // A new sheet's part before its cells, with the layout's page setup.
    static QByteArray emptySheetXml(const Vocabulary &vocabulary, const SheetLayout &layout = {});

    void begin(ByteSink &out);
    void row(ByteSink &out, int row, RowCells &cells);
    void end(ByteSink &out);
    // True when a formula cell was overwritten (the calculation chain is stale).
    bool overwroteFormulas() const;

private:
    struct ColumnEntry {
        int min, max;
        QByteArray tag;
    };
    struct OriginalRow {
        int number = 0;
        qsizetype begin = 0, end = 0;
    };
    bool nextOriginal();
    int nextTouched(int from) const;
    bool isTouched(int row) const;
    void emitBefore(ByteSink &out, int limit);
    void emitOriginal(ByteSink &out, const RowCells &cells, bool rewrite);
    void readColumns(QByteArrayView colsElement);
    void writeColumns(ByteSink &out);
    void writeDimension(ByteSink &out, QByteArrayView tag);
    void writeMergeCells(ByteSink &out, QByteArrayView original);
    void writeHyperlinks(ByteSink &out, QByteArrayView original);

    const SheetLayout &m_layout;
    StyleSheet &m_styles;
    QByteArray m_xml;
    QString m_sheetName;
    RowHook m_hook;
    std::vector<std::pair<int, int>> m_touched;
    QByteArray m_prefix;
    std::unique_ptr<ReplacedFormulas> m_formulas;
    std::unique_ptr<RowWriter> m_rows;
    WrittenCells m_written;
    std::vector<ColumnEntry> m_columns;
    qsizetype m_contentBegin = 0, m_contentEnd = 0, m_rest = 0; // sheetData's rows, what follows
    qsizetype m_scan = 0, m_copied = 0;
    OriginalRow m_original;
    int m_lastOriginal = 0;
    bool m_haveOriginal = false;
    int m_lastRow = 0;
    bool m_colsWritten = false;
    bool m_mergesWritten = false;
};

} // namespace quorvale::xlsx
