#include "xlsx/xlsxrowwriter.h"

#include "xlsx/xlsxbytesink.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxreplacedformulas.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>
#include <climits>

namespace quorvale::xlsx {

namespace {

[[noreturn]] void badSheet()
{
    throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作簿中的工作表部分已损坏，无法写入"));
}

// Column names for every column, built once.
const std::vector<QByteArray> &columnNames()
{
    static const std::vector<QByteArray> names = [] {
        std::vector<QByteArray> v(16385);
        for (int c = 1; c <= 16384; ++c)
            v[size_t(c)] = XmlText::columnName(c);
        return v;
    }();
    return names;
}

// The format a cell's element names (0 when it names none).
quint32 cellFormat(QByteArrayView cell)
{
    return quint32(XmlText::numberAttribute(cell.first(cell.indexOf('>') + 1), "s", 0));
}

// A formatting call's effect on the format a cell or row asks for.
void applyFormat(StyleRequest &request, const FormatOp &op)
{
    switch (op.property) {
    case FormatProperty::FontSize: request.fontSize = op.value; break;
    case FormatProperty::Horizontal: request.horizontal = qint8(op.value); break;
    case FormatProperty::Vertical: request.vertical = qint8(op.value); break;
    case FormatProperty::Border: request.border = qint8(op.value); break;
    }
}

bool hasEdgeSpace(const QString &text)
{
    return !text.isEmpty() && (text.front().isSpace() || text.back().isSpace());
}

} // namespace

RowWriter::RowWriter(const SheetLayout &layout, StyleSheet &styles, QByteArray prefix,
                     ReplacedFormulas &formulas, WrittenCells &written)
    : m_layout(layout), m_styles(styles), m_prefix(std::move(prefix)), m_formulas(formulas),
      m_written(written)
{
}

quint32 RowWriter::resolve(const StyleRequest &request)
{
    if (m_resolvedOnce && request == m_lastRequest)
        return m_lastXf;
    m_resolvedOnce = true;
    m_lastRequest = request;
    m_lastXf = m_styles.resolve(request);
    return m_lastXf;
}

quint32 RowWriter::columnStyle(int col) const
{
    for (const ColumnStyle &entry : m_columnStyles) {
        if (entry.min > col)
            break;
        if (col <= entry.max)
            return entry.xf;
    }
    return 0;
}

StyleRequest RowWriter::requestFor(int col, quint32 baseXf) const
{
    StyleRequest request;
    request.baseXf = baseXf;
    for (const FormatOp *op : m_rowOps) {
        if (!op->wholeRows && (col < op->col1 || col > op->col2))
            continue;
        applyFormat(request, *op);
    }
    return request;
}

void RowWriter::write(ByteSink &out, int row, const RowCells &ours, QByteArrayView original)
{
    m_rowOps.clear();
    m_cover.clear();
    bool rowFormatted = false;
    for (const FormatOp &op : m_layout.formats) {
        if (row < op.row1 || row > op.row2)
            continue;
        m_rowOps.push_back(&op);
        if (op.wholeRows)
            rowFormatted = true;
        else
            m_cover.emplace_back(op.col1, op.col2);
    }
    std::sort(m_cover.begin(), m_cover.end());
    m_rowDigits = QByteArray::number(row);
    m_lastWritten = 0;

    QByteArray rowTag;
    QByteArrayView body;
    quint32 rowXf = 0;
    bool rowCustom = false;
    if (!original.isEmpty()) {
        qsizetype pos = 0;
        XmlTag tag;
        XmlText::nextTag(original, pos, tag);
        rowTag = XmlText::removeAttribute(original.first(tag.end), "spans");
        if (tag.selfClosing)
            rowTag = rowTag.first(rowTag.size() - 2).trimmed() + ">";
        else
            body = original.sliced(tag.end, original.size() - tag.end - 6 - m_prefix.size());
        if (XmlText::isTrue(rowTag, "customFormat")) {
            rowCustom = true;
            rowXf = quint32(XmlText::numberAttribute(rowTag, "s", 0));
        }
    } else {
        rowTag = "<" + m_prefix + "row r=\"" + m_rowDigits + "\">";
    }
    // What a cell without an element of its own took before this export.
    const auto formatBefore = [this, rowCustom, originalRowXf = rowXf](int col) {
        return rowCustom ? originalRowXf : columnStyle(col);
    };
    if (rowFormatted) {
        StyleRequest rowRequest;
        rowRequest.baseXf = rowCustom ? rowXf : StyleRequest::OwnBase;
        if (m_keepsLocks)
            rowRequest.locked = m_styles.isLocked(rowCustom ? rowXf : 0) ? 1 : 0;
        for (const FormatOp *op : m_rowOps) {
            if (!op->wholeRows)
                continue;
            applyFormat(rowRequest, *op);
        }
        rowXf = resolve(rowRequest);
        rowCustom = true;
        rowTag = XmlText::setAttribute(rowTag, "s", QByteArray::number(rowXf));
        rowTag = XmlText::setAttribute(rowTag, "customFormat", "1");
    }

    const QByteArray cellClose = "</" + m_prefix + "c>";
    qsizetype cellScan = 0;
    int lastCol = 0;
    QByteArrayView origCell;
    int origCol = INT_MAX;
    auto nextOriginalCell = [&]() {
        XmlTag tag;
        origCol = INT_MAX;
        while (XmlText::nextTag(body, cellScan, tag)) {
            if (tag.closing || tag.localName() != "c")
                continue;
            qsizetype end = tag.end;
            if (!tag.selfClosing) {
                const qsizetype close = body.indexOf(cellClose, tag.end);
                if (close < 0)
                    badSheet();
                end = close + cellClose.size();
            }
            int r = 0, c = 0;
            const auto ref = XmlText::rawAttribute(body.sliced(tag.begin, tag.end - tag.begin), "r");
            origCol = ref && XmlText::parseCellRef(*ref, r, c) ? c : lastCol + 1;
            lastCol = origCol;
            origCell = body.sliced(tag.begin, end - tag.begin);
            cellScan = end;
            return;
        }
    };
    nextOriginalCell();

    out.append(rowTag);
    int firstWritten = 0, lastWrittenValue = 0;
    size_t ourIndex = 0, coverIndex = 0;
    int current = 0;
    for (;;) {
        const int uc = ourIndex < ours.size() ? ours[ourIndex].col : INT_MAX;
        while (coverIndex < m_cover.size() && m_cover[coverIndex].second <= current)
            ++coverIndex;
        const int cc = coverIndex < m_cover.size() ? std::max(m_cover[coverIndex].first, current + 1)
                                                   : INT_MAX;
        const int col = std::min({origCol, uc, cc});
        if (col == INT_MAX)
            break;
        const RowCell *mine = uc == col ? &ours[ourIndex] : nullptr;
        QByteArrayView theirs = origCol == col ? origCell : QByteArrayView();
        QByteArray spelt;
        const bool wiped = !theirs.isEmpty() && m_layout.isCleared(row, col);
        // A new merge keeps only its first cell's value.
        const bool mergedAway = (mine || !theirs.isEmpty()) && !m_layout.merges.empty() &&
                                m_layout.isMergedAway(row, col);
        static const RowCell emptied{0, CellInput::Kind::Empty, 0, {}};
        if (mergedAway && (mine || !wiped))
            mine = &emptied;
        const qint64 lockOf =
            m_keepsLocks ? qint64(theirs.isEmpty() ? formatBefore(col) : cellFormat(theirs)) : -1;
        if (!theirs.isEmpty() && (mine || wiped)) {
            m_formulas.replaced(row, col, theirs);
            if (wiped)
                theirs = {};
        } else if (!theirs.isEmpty() && m_formulas.anySharedLost()) {
            spelt = m_formulas.spelledOut(row, col, theirs);
            if (!spelt.isEmpty())
                theirs = spelt;
        }
        if (mine && mine->kind != CellInput::Kind::Empty) {
            firstWritten = firstWritten ? firstWritten : col;
            lastWrittenValue = col;
        }
        if (!theirs.isEmpty() && !mine) {
            writeOriginal(out, col, theirs);
        } else {
            quint32 base;
            if (!theirs.isEmpty())
                base = cellFormat(theirs);
            else if (rowCustom)
                base = rowXf;
            else if (const quint32 style = m_columnStyles.empty() ? 0 : columnStyle(col))
                base = style;
            else
                base = StyleRequest::OwnBase;
            writeOwn(out, col, mine, base, lockOf);
        }
        if (uc == col)
            ++ourIndex;
        if (origCol == col)
            nextOriginalCell();
        current = col;
    }
    out.append("</");
    out.append(m_prefix);
    out.append("row>");
    if (firstWritten)
        m_written.add(row, firstWritten, lastWrittenValue);
}

void RowWriter::openCell(ByteSink &out, int col, quint32 xf)
{
    out.append('<');
    out.append(m_prefix);
    out.append('c');
    if (col != m_lastWritten + 1) {
        out.append(" r=\"");
        out.append(columnNames()[size_t(col)]);
        out.append(m_rowDigits);
        out.append('"');
    }
    if (xf) {
        out.append(" s=\"");
        out.appendUInt(xf);
        out.append('"');
    }
    m_lastWritten = col;
}

void RowWriter::writeOriginal(ByteSink &out, int col, QByteArrayView cell)
{
    const qsizetype tagEnd = cell.indexOf('>') + 1;
    QByteArrayView tag = cell.first(tagEnd);
    const StyleRequest request = requestFor(col, 0);
    QByteArray changed;
    if (!request.keepsBase()) {
        StyleRequest own = request;
        own.baseXf = cellFormat(tag);
        const quint32 xf = resolve(own);
        changed = xf ? XmlText::setAttribute(tag, "s", QByteArray::number(xf))
                     : XmlText::removeAttribute(tag, "s");
        tag = changed;
    }
    // A cell that the writer placed by its order keeps its place only while
    // nothing before it was dropped.
    if (col != m_lastWritten + 1 && !XmlText::rawAttribute(tag, "r")) {
        changed = XmlText::setAttribute(tag, "r", XmlText::cellRef(m_rowDigits.toInt(), col));
        tag = changed;
    }
    out.append(tag);
    out.append(cell.sliced(tagEnd));
    m_lastWritten = col;
}

void RowWriter::writeOwn(ByteSink &out, int col, const RowCell *ours, quint32 baseXf,
                         qint64 lockOf)
{
    StyleRequest request = requestFor(col, baseXf);
    if (lockOf >= 0)
        request.locked = m_styles.isLocked(quint32(lockOf)) ? 1 : 0;
    if (!ours || ours->kind == CellInput::Kind::Empty) {
        const quint32 xf = resolve(request);
        if (xf) {
            openCell(out, col, xf);
            out.append("/>");
        }
        return;
    }
    const bool text =
        ours->kind == CellInput::Kind::Text || ours->kind == CellInput::Kind::QuotedText;
    request.quotePrefix = ours->kind == CellInput::Kind::QuotedText ? 1 : 0;
    if (ours->kind == CellInput::Kind::Date)
        request.numFmt = 1;
    else if (ours->kind == CellInput::Kind::DateTime)
        request.numFmt = 2;
    openCell(out, col, resolve(request));
    if (text) {
        out.append(" t=\"inlineStr\"><");
        out.append(m_prefix);
        out.append("is><");
        out.append(m_prefix);
        out.append(hasEdgeSpace(ours->text) ? QByteArrayView("t xml:space=\"preserve\">")
                                            : QByteArrayView("t>"));
        out.appendText(ours->text);
        out.append("</");
        out.append(m_prefix);
        out.append("t></");
        out.append(m_prefix);
        out.append("is></");
    } else {
        out.append("><");
        out.append(m_prefix);
        out.append("v>");
        out.appendDouble(ours->number);
        out.append("</");
        out.append(m_prefix);
        out.append("v></");
    }
    out.append(m_prefix);
    out.append("c>");
}

} // namespace quorvale::xlsx
