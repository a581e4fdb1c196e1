#pragma once

#include "xlsx/xlsxstylesheet.h"

#include <QByteArray>
#include <QByteArrayView>
#include <vector>

namespace quorvale::xlsx {

class ByteSink;
class SheetData;
struct CellRecord;
struct FormatOp;

// Writes a worksheet part: the sheet's original XML with the written cells,
// formats, widths and merges merged in. Rows, cells and elements that the
// export does not touch are copied as they were.
class SheetWriter {
public:
    SheetWriter(const SheetData &data, StyleSheet &styles, QByteArray original);
    static QByteArray emptySheetXml();

    void write(ByteSink &out);
    // True when a formula cell was overwritten (the calculation chain is stale).
    bool overwroteFormulas() const { return m_overwroteFormulas; }

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
    void writeCell(ByteSink &out, int col, const CellRecord *ours, QByteArrayView original,
                   quint32 baseXf);
    quint32 resolve(const StyleRequest &request);
    quint32 columnStyle(int col) const;

    const SheetData &m_data;
    StyleSheet &m_styles;
    QByteArray m_xml;
    QByteArray m_prefix;
    QByteArray m_formulaOpen;
    std::vector<ColumnEntry> m_columns;
    std::vector<const FormatOp *> m_rowOps;
    std::vector<std::pair<int, int>> m_cover;
    QByteArray m_rowDigits;
    bool m_overwroteFormulas = false;
    bool m_colsWritten = false;
    bool m_mergesWritten = false;
    StyleRequest m_lastRequest;
    quint32 m_lastXf = 0;
};

} // namespace quorvale::xlsx
