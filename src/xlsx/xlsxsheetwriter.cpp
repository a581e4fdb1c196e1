#include "xlsx/xlsxsheetwriter.h"

#include "xlsx/xlsxbytesink.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxreplacedformulas.h"
#include "xlsx/xlsxsheetdata.h"
#include "xlsx/xlsxvocabulary.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace quorvale::xlsx {

namespace {

[[noreturn]] void badSheet()
{
    throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作簿中的工作表部分已损坏，无法写入"));
}

// Elements that the schema places after mergeCells in a worksheet.
bool comesAfterMergeCells(QByteArrayView local)
{
    static const char *const names[] = {
        "phoneticPr", "conditionalFormatting", "dataValidations", "hyperlinks", "printOptions",
        "pageMargins", "pageSetup", "headerFooter", "rowBreaks", "colBreaks", "customProperties",
        "cellWatches", "ignoredErrors", "smartTags", "drawing", "legacyDrawing",
        "legacyDrawingHF", "drawingHF", "picture", "oleObjects", "controls", "webPublishItems",
        "tableParts", "extLst"};
    for (const char *name : names)
        if (local == name)
            return true;
    return false;
}

int intAttribute(QByteArrayView tagText, const char *name, int fallback)
{
    const auto value = XmlText::rawAttribute(tagText, name);
    if (!value || value->isEmpty() || value->size() > 9)
        return fallback;
    int n = 0;
    for (char c : *value) {
        if (c < '0' || c > '9')
            return fallback;
        n = n * 10 + (c - '0');
    }
    return n;
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

// Excel stores a width as characters plus cell padding, rounded to whole
// pixels of the default font's digit width (7 pixels for Calibri 11).
double storedWidth(double chars)
{
    constexpr double digit = 7;
    if (chars <= 0)
        return 0;
    const double pixels = chars < 1 ? std::round(chars * (digit + 5))
                                    : std::round(chars * digit) + 5;
    return std::trunc(pixels / digit * 256) / 256;
}

// Whether a cell of the range is one the export writes.
bool coversWrittenCell(const SheetData &data, const CellRange &range)
{
    for (auto it = data.rows.lower_bound(range.row1); it != data.rows.end() && it->first <= range.row2;
         ++it)
        for (const CellRecord &cell : it->second)
            if (cell.col >= range.col1 && cell.col <= range.col2)
                return true;
    return false;
}

} // namespace

QByteArray SheetWriter::emptySheetXml(const Vocabulary &vocabulary)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
           "<worksheet xmlns=\"" +
           QByteArray(vocabulary.main) + "\" xmlns:r=\"" + vocabulary.relationships +
           "\"><dimension ref=\"A1\"/><sheetViews><sheetView workbookViewId=\"0\"/></sheetViews>"
           "<sheetFormatPr defaultRowHeight=\"15\"/><sheetData/>"
           "<pageMargins left=\"0.7\" right=\"0.7\" top=\"0.75\" bottom=\"0.75\" header=\"0.3\" "
           "footer=\"0.3\"/></worksheet>";
}

SheetWriter::SheetWriter(const SheetData &data, StyleSheet &styles, QByteArray original,
                         const Vocabulary &vocabulary, QString sheetName)
    : m_data(data), m_styles(styles),
      m_xml(original.isEmpty() ? emptySheetXml(vocabulary) : original),
      m_sheetName(std::move(sheetName))
{
}

quint32 SheetWriter::resolve(const StyleRequest &request)
{
    if (request == m_lastRequest)
        return m_lastXf;
    m_lastRequest = request;
    m_lastXf = m_styles.resolve(request);
    return m_lastXf;
}

void SheetWriter::write(ByteSink &out)
{
    const QByteArrayView xml(m_xml);
    m_lastRequest = StyleRequest{};
    m_lastXf = m_styles.resolve(m_lastRequest);
    qsizetype pos = 0;
    XmlTag root;
    if (!XmlText::nextTag(xml, pos, root) || root.localName() != "worksheet" || root.selfClosing)
        badSheet();
    m_prefix = root.prefix().toByteArray();
    m_formulas = std::make_unique<ReplacedFormulas>(m_prefix, m_data.clears, m_sheetName);
    out.append(xml.first(root.end));
    qsizetype copied = root.end;
    XmlTag child;
    while (XmlText::nextTag(xml, pos, child)) {
        if (child.closing) {
            out.append(xml.sliced(copied, child.begin - copied));
            if (!m_mergesWritten && !m_data.merges.empty())
                writeMergeCells(out, {});
            out.append(xml.sliced(child.begin));
            return;
        }
        const QByteArrayView local = child.localName();
        qsizetype end = -1, contentEnd = -1;
        if (local == "sheetData") {
            if (child.selfClosing) {
                end = contentEnd = child.end;
            } else {
                const QByteArray close = "</" + m_prefix + "sheetData>";
                contentEnd = m_xml.indexOf(close, child.end);
                end = contentEnd < 0 ? -1 : contentEnd + close.size();
            }
        } else {
            end = XmlText::elementEnd(xml, child);
        }
        if (end < 0)
            badSheet();
        out.append(xml.sliced(copied, child.begin - copied));
        const QByteArrayView element = xml.sliced(child.begin, end - child.begin);
        if (local == "sheetData" && !m_colsWritten && !m_data.widths.empty())
            writeColumns(out);
        if (!m_mergesWritten && !m_data.merges.empty() && comesAfterMergeCells(local))
            writeMergeCells(out, {});
        if (local == "dimension") {
            writeDimension(out, element);
        } else if (local == "cols") {
            readColumns(element);
            if (m_data.widths.empty())
                out.append(element);
            else
                writeColumns(out);
        } else if (local == "sheetData") {
            writeSheetData(out, xml.sliced(child.begin, child.end - child.begin), child.end,
                           contentEnd);
        } else if (local == "mergeCells") {
            writeMergeCells(out, element);
        } else if (local == "hyperlinks") {
            writeHyperlinks(out, element);
        } else {
            out.append(element);
        }
        copied = end;
        pos = end;
    }
    badSheet();
}

void SheetWriter::writeDimension(ByteSink &out, QByteArrayView tag)
{
    int row1 = INT_MAX, col1 = INT_MAX, row2 = 0, col2 = 0;
    auto include = [&](int r1, int c1, int r2, int c2) {
        row1 = std::min(row1, r1);
        col1 = std::min(col1, c1);
        row2 = std::max(row2, r2);
        col2 = std::max(col2, c2);
    };
    for (const auto &[row, cells] : m_data.rows)
        if (!cells.empty())
            include(row, cells.front().col, row, cells.back().col);
    for (const FormatOp &op : m_data.formats)
        if (!op.wholeRows)
            include(op.row1, op.col1, op.row2, op.col2);
    if (row2 == 0) {
        out.append(tag);
        return;
    }
    const QByteArray ref = XmlText::attribute(tag, "ref").value_or(QByteArray());
    const qsizetype colon = ref.indexOf(':');
    int r = 0, c = 0;
    if (XmlText::parseCellRef(colon < 0 ? ref : ref.first(colon), r, c)) {
        // "A1" alone is how an empty sheet states its size.
        if (colon >= 0 || r != 1 || c != 1)
            include(r, c, r, c);
    }
    if (colon >= 0 && XmlText::parseCellRef(ref.mid(colon + 1), r, c))
        include(r, c, r, c);
    QByteArray value = XmlText::cellRef(row1, col1);
    if (row1 != row2 || col1 != col2)
        value += ":" + XmlText::cellRef(row2, col2);
    out.append(XmlText::setAttribute(tag, "ref", value));
}

void SheetWriter::readColumns(QByteArrayView colsElement)
{
    qsizetype pos = 0;
    XmlTag tag;
    XmlText::nextTag(colsElement, pos, tag);
    while (XmlText::nextTag(colsElement, pos, tag)) {
        if (tag.closing || tag.localName() != "col")
            continue;
        const QByteArrayView text = colsElement.sliced(tag.begin, tag.end - tag.begin);
        QByteArray element = text.toByteArray();
        if (!tag.selfClosing) {
            const qsizetype end = XmlText::elementEnd(colsElement, tag);
            element = colsElement.sliced(tag.begin, end - tag.begin).toByteArray();
            pos = end;
        }
        const int min = intAttribute(text, "min", 0), max = intAttribute(text, "max", 0);
        if (min >= 1 && max >= min)
            m_columns.push_back({min, max, element});
    }
    std::sort(m_columns.begin(), m_columns.end(),
              [](const ColumnEntry &a, const ColumnEntry &b) { return a.min < b.min; });
}

quint32 SheetWriter::columnStyle(int col) const
{
    for (const ColumnEntry &entry : m_columns) {
        if (entry.min > col)
            break;
        if (col <= entry.max)
            return quint32(std::max(0, intAttribute(entry.tag, "style", 0)));
    }
    return 0;
}

void SheetWriter::writeColumns(ByteSink &out)
{
    m_colsWritten = true;
    std::vector<ColumnEntry> entries = m_columns;
    for (const auto &[col, chars] : m_data.widths) {
        auto it = std::find_if(entries.begin(), entries.end(),
                               [col = col](const ColumnEntry &s) { return s.min <= col && col <= s.max; });
        QByteArray tag;
        if (it != entries.end()) {
            const ColumnEntry entry = *it;
            entries.erase(it);
            if (entry.min < col)
                entries.push_back({entry.min, col - 1, entry.tag});
            if (col < entry.max)
                entries.push_back({col + 1, entry.max, entry.tag});
            tag = entry.tag;
        } else {
            tag = "<" + m_prefix + "col/>";
        }
        const double width = storedWidth(chars);
        tag = XmlText::setAttribute(tag, "width", QByteArray::number(width, 'g', 15));
        tag = XmlText::setAttribute(tag, "customWidth", "1");
        tag = width == 0 ? XmlText::setAttribute(tag, "hidden", "1")
                         : XmlText::removeAttribute(tag, "hidden");
        entries.push_back({col, col, tag});
    }
    std::sort(entries.begin(), entries.end(),
              [](const ColumnEntry &a, const ColumnEntry &b) { return a.min < b.min; });
    out.append("<" + m_prefix + "cols>");
    for (const ColumnEntry &entry : entries) {
        QByteArray tag = XmlText::setAttribute(entry.tag, "min", QByteArray::number(entry.min));
        out.append(XmlText::setAttribute(tag, "max", QByteArray::number(entry.max)));
    }
    out.append("</" + m_prefix + "cols>");
}

void SheetWriter::writeMergeCells(ByteSink &out, QByteArrayView original)
{
    m_mergesWritten = true;
    std::vector<CellRange> fresh;
    for (auto it = m_data.merges.rbegin(); it != m_data.merges.rend(); ++it)
        if (std::none_of(fresh.begin(), fresh.end(),
                         [&](const CellRange &r) { return r.intersects(*it); }))
            fresh.push_back(*it);
    std::reverse(fresh.begin(), fresh.end());
    std::vector<QByteArray> kept;
    qsizetype pos = 0;
    XmlTag tag;
    while (!original.isEmpty() && XmlText::nextTag(original, pos, tag)) {
        if (tag.closing || tag.localName() != "mergeCell")
            continue;
        const QByteArrayView text = original.sliced(tag.begin, tag.end - tag.begin);
        const QByteArray ref = XmlText::attribute(text, "ref").value_or(QByteArray());
        const qsizetype colon = ref.indexOf(':');
        CellRange range{};
        bool overlaps = false;
        if (colon > 0 && XmlText::parseCellRef(ref.first(colon), range.row1, range.col1) &&
            XmlText::parseCellRef(ref.mid(colon + 1), range.row2, range.col2))
            overlaps = std::any_of(fresh.begin(), fresh.end(),
                                   [&](const CellRange &r) { return r.intersects(range); });
        overlaps = overlaps || std::any_of(m_data.clears.begin(), m_data.clears.end(),
                                           [&](const CellRange &r) { return r.intersects(range); });
        overlaps = overlaps || coversWrittenCell(m_data, range);
        if (!overlaps)
            kept.push_back(text.toByteArray());
    }
    if (kept.empty() && fresh.empty())
        return;
    for (const CellRange &r : fresh)
        kept.push_back("<" + m_prefix + "mergeCell ref=\"" + XmlText::cellRef(r.row1, r.col1) +
                       ":" + XmlText::cellRef(r.row2, r.col2) + "\"/>");
    out.append("<" + m_prefix + "mergeCells count=\"" + QByteArray::number(qsizetype(kept.size())) +
               "\">");
    for (const QByteArray &k : kept)
        out.append(k);
    out.append("</" + m_prefix + "mergeCells>");
}

void SheetWriter::writeHyperlinks(ByteSink &out, QByteArrayView original)
{
    // A link on a written or cleared cell would point at the old content.
    std::vector<QByteArrayView> kept;
    qsizetype pos = 0;
    XmlTag tag;
    XmlText::nextTag(original, pos, tag);
    const QByteArrayView start = original.first(tag.end);
    bool removed = false;
    while (!start.endsWith("/>") && XmlText::nextTag(original, pos, tag)) {
        if (tag.closing)
            continue;
        const qsizetype end = XmlText::elementEnd(original, tag);
        if (end < 0)
            badSheet();
        const QByteArrayView element = original.sliced(tag.begin, end - tag.begin);
        const auto range = CellRange::parse(
            XmlText::attribute(element.first(tag.end - tag.begin), "ref").value_or(QByteArray()));
        const bool over = range && (coversWrittenCell(m_data, *range) ||
                                    std::any_of(m_data.clears.begin(), m_data.clears.end(),
                                                [&](const CellRange &r) {
                                                    return r.intersects(*range);
                                                }));
        if (over)
            removed = true;
        else
            kept.push_back(element);
        pos = end;
    }
    if (!removed) {
        out.append(original);
        return;
    }
    if (kept.empty()) // an empty list of links is not allowed
        return;
    out.append(start);
    for (QByteArrayView element : kept)
        out.append(element);
    out.append("</" + m_prefix + "hyperlinks>");
}

void SheetWriter::writeSheetData(ByteSink &out, QByteArrayView startTag, qsizetype contentBegin,
                                 qsizetype contentEnd)
{
    const QByteArrayView xml(m_xml);
    std::vector<int> affected;
    affected.reserve(m_data.rows.size());
    for (const auto &entry : m_data.rows)
        affected.push_back(entry.first);
    for (const FormatOp &op : m_data.formats)
        for (int r = op.row1; r <= op.row2; ++r)
            affected.push_back(r);
    std::sort(affected.begin(), affected.end());
    affected.erase(std::unique(affected.begin(), affected.end()), affected.end());

    if (startTag.endsWith("/>"))
        out.append(startTag.first(startTag.size() - 2).trimmed().toByteArray() + ">");
    else
        out.append(startTag);

    const QByteArray rowClose = "</" + m_prefix + "row>";
    qsizetype scan = contentBegin, copied = contentBegin;
    int lastRow = 0;
    struct OriginalRow {
        int number;
        qsizetype begin, end;
    } orig{};
    auto nextOriginal = [&]() -> bool {
        XmlTag tag;
        while (scan < contentEnd && XmlText::nextTag(xml, scan, tag) && tag.begin < contentEnd) {
            if (tag.closing || tag.localName() != "row")
                continue;
            const QByteArrayView text = xml.sliced(tag.begin, tag.end - tag.begin);
            orig.number = intAttribute(text, "r", lastRow + 1);
            lastRow = orig.number;
            orig.begin = tag.begin;
            if (tag.selfClosing) {
                orig.end = tag.end;
            } else {
                const qsizetype close = m_xml.indexOf(rowClose, tag.end);
                if (close < 0 || close > contentEnd)
                    badSheet();
                orig.end = close + rowClose.size();
            }
            scan = orig.end;
            return true;
        }
        return false;
    };
    bool haveOriginal = nextOriginal();
    size_t i = 0;
    while (haveOriginal || i < affected.size()) {
        const int ours = i < affected.size() ? affected[i] : INT_MAX;
        const int theirs = haveOriginal ? orig.number : INT_MAX;
        if (theirs < ours && !m_data.clearsRow(theirs)) {
            out.append(xml.sliced(copied, orig.end - copied));
            copied = orig.end;
            haveOriginal = nextOriginal();
        } else if (theirs < ours) {
            out.append(xml.sliced(copied, orig.begin - copied));
            writeRow(out, theirs, xml.sliced(orig.begin, orig.end - orig.begin));
            copied = orig.end;
            haveOriginal = nextOriginal();
        } else if (ours < theirs) {
            writeRow(out, ours, {});
            ++i;
        } else {
            out.append(xml.sliced(copied, orig.begin - copied));
            writeRow(out, ours, xml.sliced(orig.begin, orig.end - orig.begin));
            copied = orig.end;
            ++i;
            haveOriginal = nextOriginal();
        }
    }
    out.append(xml.sliced(copied, contentEnd - copied));
    out.append("</" + m_prefix + "sheetData>");
}

void SheetWriter::writeRow(ByteSink &out, int row, QByteArrayView original)
{
    m_rowOps.clear();
    m_cover.clear();
    bool rowFormatted = false;
    for (const FormatOp &op : m_data.formats) {
        if (row < op.row1 || row > op.row2)
            continue;
        m_rowOps.push_back(&op);
        if (op.wholeRows)
            rowFormatted = true;
        else
            m_cover.emplace_back(op.col1, op.col2);
    }
    std::sort(m_cover.begin(), m_cover.end());
    const auto found = m_data.rows.find(row);
    const CellRecord *ours = found == m_data.rows.end() ? nullptr : found->second.data();
    const size_t oursCount = ours ? found->second.size() : 0;

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
        const QByteArray custom = XmlText::attribute(rowTag, "customFormat").value_or("0");
        if (custom == "1" || custom == "true") {
            rowCustom = true;
            rowXf = quint32(std::max(0, intAttribute(rowTag, "s", 0)));
        }
    } else {
        m_rowDigits = QByteArray::number(row);
        rowTag = "<" + m_prefix + "row r=\"" + m_rowDigits + "\">";
    }
    if (rowFormatted) {
        StyleRequest request;
        request.baseXf = rowCustom ? rowXf : StyleRequest::OwnBase;
        for (const FormatOp *op : m_rowOps) {
            if (!op->wholeRows)
                continue;
            switch (op->property) {
            case FormatProperty::FontSize: request.fontSize = op->value; break;
            case FormatProperty::Horizontal: request.horizontal = qint8(op->value); break;
            case FormatProperty::Vertical: request.vertical = qint8(op->value); break;
            case FormatProperty::Border: request.border = qint8(op->value); break;
            }
        }
        rowXf = resolve(request);
        rowCustom = true;
        rowTag = XmlText::setAttribute(rowTag, "s", QByteArray::number(rowXf));
        rowTag = XmlText::setAttribute(rowTag, "customFormat", "1");
    }
    m_rowDigits = QByteArray::number(row);

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
    size_t ourIndex = 0, coverIndex = 0;
    int current = 0;
    for (;;) {
        const int uc = ourIndex < oursCount ? ours[ourIndex].col : INT_MAX;
        while (coverIndex < m_cover.size() && m_cover[coverIndex].second <= current)
            ++coverIndex;
        const int cc = coverIndex < m_cover.size() ? std::max(m_cover[coverIndex].first, current + 1)
                                                   : INT_MAX;
        const int col = std::min({origCol, uc, cc});
        if (col == INT_MAX)
            break;
        const CellRecord *mine = uc == col ? &ours[ourIndex] : nullptr;
        QByteArrayView theirs = origCol == col ? origCell : QByteArrayView();
        QByteArray spelt;
        const bool wiped = !theirs.isEmpty() && m_data.isCleared(row, col);
        if (!theirs.isEmpty() && (mine || wiped)) {
            m_formulas->replaced(row, col, theirs);
            if (wiped)
                theirs = {};
        } else if (!theirs.isEmpty() && m_formulas->anySharedLost()) {
            spelt = m_formulas->spelledOut(row, col, theirs);
            if (!spelt.isEmpty())
                theirs = spelt;
        }
        quint32 base;
        if (!theirs.isEmpty())
            base = quint32(std::max(0, intAttribute(theirs.first(theirs.indexOf('>') + 1), "s", 0)));
        else if (rowCustom)
            base = rowXf;
        else if (const quint32 style = m_columns.empty() ? 0 : columnStyle(col))
            base = style;
        else
            base = StyleRequest::OwnBase;
        writeCell(out, col, mine, theirs, base);
        if (mine)
            ++ourIndex;
        if (origCol == col)
            nextOriginalCell();
        current = col;
    }
    out.append("</" + m_prefix + "row>");
}

void SheetWriter::writeCell(ByteSink &out, int col, const CellRecord *ours,
                            QByteArrayView original, quint32 baseXf)
{
    StyleRequest request;
    request.baseXf = baseXf;
    for (const FormatOp *op : m_rowOps) {
        if (!op->wholeRows && (col < op->col1 || col > op->col2))
            continue;
        switch (op->property) {
        case FormatProperty::FontSize: request.fontSize = op->value; break;
        case FormatProperty::Horizontal: request.horizontal = qint8(op->value); break;
        case FormatProperty::Vertical: request.vertical = qint8(op->value); break;
        case FormatProperty::Border: request.border = qint8(op->value); break;
        }
    }
    const QByteArray &name = columnNames()[size_t(col)];
    auto openCell = [&](quint32 xf) {
        out.append('<');
        out.append(m_prefix);
        out.append("c r=\"");
        out.append(name);
        out.append(m_rowDigits);
        if (xf) {
            out.append("\" s=\"");
            out.appendUInt(xf);
        }
        out.append('"');
    };
    if (!ours) {
        if (!original.isEmpty()) {
            if (request.keepsBase()) {
                out.append(original);
                return;
            }
            const quint32 xf = resolve(request);
            const qsizetype tagEnd = original.indexOf('>') + 1;
            const QByteArrayView tag = original.first(tagEnd);
            out.append(xf ? XmlText::setAttribute(tag, "s", QByteArray::number(xf))
                          : XmlText::removeAttribute(tag, "s"));
            out.append(original.sliced(tagEnd));
            return;
        }
        const quint32 xf = resolve(request);
        if (xf) {
            openCell(xf);
            out.append("/>");
        }
        return;
    }
    const char *type = nullptr;
    switch (ours->kind) {
    case CellInput::Kind::Empty: break;
    case CellInput::Kind::Number: request.quotePrefix = 0; break;
    case CellInput::Kind::Date: request.numFmt = 1; request.quotePrefix = 0; break;
    case CellInput::Kind::DateTime: request.numFmt = 2; request.quotePrefix = 0; break;
    case CellInput::Kind::Text: request.quotePrefix = 0; type = "s"; break;
    case CellInput::Kind::QuotedText: request.quotePrefix = 1; type = "s"; break;
    }
    const quint32 xf = resolve(request);
    if (ours->kind == CellInput::Kind::Empty) {
        if (xf) {
            openCell(xf);
            out.append("/>");
        }
        return;
    }
    openCell(xf);
    if (type)
        out.append(" t=\"s\"");
    out.append("><");
    out.append(m_prefix);
    out.append("v>");
    if (type)
        out.appendUInt(ours->string);
    else
        out.appendDouble(ours->number);
    out.append("</");
    out.append(m_prefix);
    out.append("v></");
    out.append(m_prefix);
    out.append("c>");
}

} // namespace quorvale::xlsx
