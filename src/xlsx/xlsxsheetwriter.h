#pragma once

#include "xlsx/xlsxreplacedformulas.h"
#include "xlsx/xlsxstylesheet.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <memory>
#include <vector>

namespace quorvale::xlsx {

class ByteSink;
class SheetData;
struct CellRecord;
struct FormatOp;
struct Vocabulary;

// Writes a worksheet part: the sheet's original XML with the written cells,
// formats, widths and merges merged in. Rows, cells and elements that the
// export does not touch are copied as they were, except what would hide or
// contradict the written cells: merges and hyperlinks over them go, and a
// shared formula whose first cell was overwritten is spelt out in the
// cells that still use it. An array formula that the block cuts through is
// refused (Excel cannot change part of an array).
class SheetWriter {
public:
    SheetWriter(const SheetData &data, StyleSheet &styles, QByteArray original,
                const Vocabulary &vocabulary, QString sheetName);
    static QByteArray emptySheetXml(const Vocabulary &vocabulary);

    void write(ByteSink &out);
    // True when a formula cell was overwritten (the calculation chain is stale).
    bool overwroteFormulas() const { return m_formulas && m_formulas->anyReplaced(); }

private:
    struct ColumnEntry {
        int min, max;
        QByteArray tag;
    };
    void readColumns(QByteArrayView colsElement);
    void writeColumns(ByteSink &out);
    void writeDimension(ByteSink &out, QByteArrayView tag);
    void writeSheetData(ByteSink &out, QByteArrayView startTag, qsizetype contentBegin,
                        qsizetype contentEnd);
    void writeRow(ByteSink &out, int row, QByteArrayView original);
    void writeMergeCells(ByteSink &out, QByteArrayView original);
    void writeHyperlinks(ByteSink &out, QByteArrayView original);
    void writeCell(ByteSink &out, int col, const CellRecord *ours, QByteArrayView original,
                   quint32 baseXf);
    quint32 resolve(const StyleRequest &request);
    quint32 columnStyle(int col) const;

    const SheetData &m_data;
    StyleSheet &m_styles;
    QByteArray m_xml;
    QString m_sheetName;
    std::unique_ptr<ReplacedFormulas> m_formulas;
    QByteArray m_prefix;
    std::vector<ColumnEntry> m_columns;
    std::vector<const FormatOp *> m_rowOps;
    std::vector<std::pair<int, int>> m_cover;
    QByteArray m_rowDigits;
    bool m_colsWritten = false;
    bool m_mergesWritten = false;
    StyleRequest m_lastRequest;
    quint32 m_lastXf = 0;
};

} // namespace quorvale::xlsx
