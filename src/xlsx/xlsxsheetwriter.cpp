#include "xlsx/xlsxsheetwriter.h"

#include "xlsx/xlsxbytesink.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxreplacedformulas.h"
#include "xlsx/xlsxsheetprotection.h"
#include "xlsx/xlsxsheetlayout.h"
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

} // namespace

QByteArray SheetWriter::emptySheetXml(const Vocabulary &vocabulary, const SheetLayout &layout)
{
    const bool fit = layout.landscapeOnePageWide;
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
           "<worksheet xmlns=\"" +
           QByteArray(vocabulary.main) + "\" xmlns:r=\"" + vocabulary.relationships + "\">" +
           (fit ? "<sheetPr><pageSetUpPr fitToPage=\"1\"/></sheetPr>" : "") +
           "<dimension ref=\"A1\"/><sheetViews><sheetView workbookViewId=\"0\"/></sheetViews>"
           "<sheetFormatPr defaultRowHeight=\"15\"/><sheetData/>"
           "<pageMargins left=\"0.7\" right=\"0.7\" top=\"0.75\" bottom=\"0.75\" header=\"0.3\" "
           "footer=\"0.3\"/>" +
           (fit ? "<pageSetup paperSize=\"9\" orientation=\"landscape\" fitToWidth=\"1\" "
                  "fitToHeight=\"0\"/>"
                : "") +
           "</worksheet>";
}

SheetWriter::SheetWriter(const SheetLayout &layout, StyleSheet &styles, QByteArray original,
                         const Vocabulary &vocabulary, QString sheetName, RowHook hook)
    : m_layout(layout), m_styles(styles),
      m_xml(original.isEmpty() ? emptySheetXml(vocabulary, layout) : original),
      m_sheetName(std::move(sheetName)), m_hook(std::move(hook)), m_touched(layout.touchedRows())
{
}

SheetWriter::~SheetWriter() = default;

bool SheetWriter::overwroteFormulas() const
{
    return m_formulas && m_formulas->anyReplaced();
}

void SheetWriter::begin(ByteSink &out)
{
    const QByteArrayView xml(m_xml);
    qsizetype pos = 0;
    XmlTag root;
    if (!XmlText::nextTag(xml, pos, root) || root.localName() != "worksheet" || root.selfClosing)
        badSheet();
    m_prefix = root.prefix().toByteArray();
    m_formulas = std::make_unique<ReplacedFormulas>(m_prefix, m_layout.clears, m_sheetName);
    m_rows = std::make_unique<RowWriter>(m_layout, m_styles, m_prefix, *m_formulas, m_written);
    m_rows->setKeepsLocks(SheetProtection::isProtected(xml));
    out.append(xml.first(root.end));
    qsizetype copied = root.end;
    XmlTag child;
    while (XmlText::nextTag(xml, pos, child)) {
        if (child.closing)
            break;
        const QByteArrayView local = child.localName();
        out.append(xml.sliced(copied, child.begin - copied));
        if (local == "sheetData") {
            if (!m_colsWritten && !m_layout.widths.empty())
                writeColumns(out);
            if (child.selfClosing) {
                m_contentBegin = m_contentEnd = m_rest = child.end;
                out.append(xml.sliced(child.begin, child.end - child.begin - 2).trimmed());
                out.append('>');
            } else {
                const QByteArray close = "</" + m_prefix + "sheetData>";
                m_contentBegin = child.end;
                m_contentEnd = m_xml.indexOf(close, child.end);
                if (m_contentEnd < 0)
                    badSheet();
                m_rest = m_contentEnd + close.size();
                out.append(xml.sliced(child.begin, child.end - child.begin));
            }
            m_scan = m_copied = m_contentBegin;
            m_haveOriginal = nextOriginal();
            return;
        }
        const qsizetype end = XmlText::elementEnd(xml, child);
        if (end < 0)
            badSheet();
        const QByteArrayView element = xml.sliced(child.begin, end - child.begin);
        if (local == "dimension") {
            writeDimension(out, element);
        } else if (local == "cols") {
            readColumns(element);
            if (m_layout.widths.empty())
                out.append(element);
            else
                writeColumns(out);
        } else {
            out.append(element);
        }
        copied = end;
        pos = end;
    }
    badSheet(); // a worksheet without sheetData
}

bool SheetWriter::nextOriginal()
{
    const QByteArrayView xml(m_xml);
    const QByteArray rowClose = "</" + m_prefix + "row>";
    XmlTag tag;
    while (m_scan < m_contentEnd && XmlText::nextTag(xml, m_scan, tag) && tag.begin < m_contentEnd) {
        if (tag.closing || tag.localName() != "row")
            continue;
        const QByteArrayView text = xml.sliced(tag.begin, tag.end - tag.begin);
        m_original.number = XmlText::numberAttribute(text, "r", m_lastOriginal + 1);
        m_lastOriginal = m_original.number;
        m_original.begin = tag.begin;
        if (tag.selfClosing) {
            m_original.end = tag.end;
        } else {
            const qsizetype close = m_xml.indexOf(rowClose, tag.end);
            if (close < 0 || close > m_contentEnd)
                badSheet();
            m_original.end = close + rowClose.size();
        }
        m_scan = m_original.end;
        return true;
    }
    return false;
}

// The first row at or after `from` that the layout or a table header asks
// to be written even without cells of its own; INT_MAX when none.
int SheetWriter::nextTouched(int from) const
{
    int next = INT_MAX;
    for (const auto &[first, last] : m_touched)
        if (last >= from) {
            next = std::max(first, from);
            break;
        }
    if (m_hook.rows)
        for (const int row : *m_hook.rows)
            if (row >= from) {
                next = std::min(next, row);
                break;
            }
    return next;
}

bool SheetWriter::isTouched(int row) const
{
    return nextTouched(row) == row;
}

void SheetWriter::emitOriginal(ByteSink &out, const RowCells &cells, bool rewrite)
{
    const QByteArrayView xml(m_xml);
    const QByteArrayView text = xml.sliced(m_original.begin, m_original.end - m_original.begin);
    // Cells that still use a shared formula whose first cell was replaced
    // get it spelt out.
    rewrite = rewrite || (m_formulas->anySharedLost() && text.contains("shared"));
    if (rewrite) {
        out.append(xml.sliced(m_copied, m_original.begin - m_copied));
        m_rows->write(out, m_original.number, cells, text);
    } else {
        out.append(xml.sliced(m_copied, m_original.end - m_copied));
    }
    m_copied = m_original.end;
    m_haveOriginal = nextOriginal();
}

void SheetWriter::emitBefore(ByteSink &out, int limit)
{
    for (;;) {
        const int theirs = m_haveOriginal ? m_original.number : INT_MAX;
        const int touched = nextTouched(m_lastRow + 1);
        const int row = std::min(theirs, touched);
        if (row >= limit || row == INT_MAX)
            return;
        RowCells none;
        if (m_hook.follow)
            m_hook.follow(row, none);
        if (row == theirs)
            emitOriginal(out, none, touched == row || m_layout.clearsRow(row) || !none.empty());
        else if (!none.empty() || isTouched(row))
            m_rows->write(out, row, none, {});
        m_lastRow = std::max(m_lastRow, row);
    }
}

void SheetWriter::row(ByteSink &out, int row, RowCells &cells)
{
    emitBefore(out, row);
    if (m_hook.follow)
        m_hook.follow(row, cells);
    if (m_haveOriginal && m_original.number == row)
        emitOriginal(out, cells, true);
    else
        m_rows->write(out, row, cells, {});
    m_lastRow = std::max(m_lastRow, row);
}

void SheetWriter::end(ByteSink &out)
{
    emitBefore(out, INT_MAX);
    const QByteArrayView xml(m_xml);
    out.append(xml.sliced(m_copied, m_contentEnd - m_copied));
    out.append("</" + m_prefix + "sheetData>");
    qsizetype copied = m_rest, pos = m_rest;
    XmlTag child;
    while (XmlText::nextTag(xml, pos, child)) {
        if (child.closing) {
            out.append(xml.sliced(copied, child.begin - copied));
            if (!m_mergesWritten && !m_layout.merges.empty())
                writeMergeCells(out, {});
            if (!m_layout.drawingRelId.isEmpty())
                out.append("<" + m_prefix + "drawing r:id=\"" + m_layout.drawingRelId + "\"/>");
            out.append(xml.sliced(child.begin));
            return;
        }
        const QByteArrayView local = child.localName();
        const qsizetype end = XmlText::elementEnd(xml, child);
        if (end < 0)
            badSheet();
        out.append(xml.sliced(copied, child.begin - copied));
        const QByteArrayView element = xml.sliced(child.begin, end - child.begin);
        if (!m_mergesWritten && !m_layout.merges.empty() && comesAfterMergeCells(local))
            writeMergeCells(out, {});
        if (local == "mergeCells")
            writeMergeCells(out, element);
        else if (local == "hyperlinks")
            writeHyperlinks(out, element);
        else
            out.append(element);
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
    // Rows are written after this element: the declared ranges stand for them.
    const CellRange declared = m_layout.bounds();
    if (declared.row1 == 0) {
        out.append(tag);
        return;
    }
    include(declared.row1, declared.col1, declared.row2, declared.col2);
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
        const int min = XmlText::numberAttribute(text, "min", 0), max = XmlText::numberAttribute(text, "max", 0);
        if (min >= 1 && max >= min)
            m_columns.push_back({min, max, element});
    }
    std::sort(m_columns.begin(), m_columns.end(),
              [](const ColumnEntry &a, const ColumnEntry &b) { return a.min < b.min; });
    std::vector<RowWriter::ColumnStyle> styles;
    for (const ColumnEntry &entry : m_columns)
        if (const int xf = XmlText::numberAttribute(entry.tag, "style", 0); xf > 0)
            styles.push_back({entry.min, entry.max, quint32(xf)});
    m_rows->setColumnStyles(std::move(styles));
}

void SheetWriter::writeColumns(ByteSink &out)
{
    m_colsWritten = true;
    std::vector<ColumnEntry> entries = m_columns;
    for (const auto &[col, chars] : m_layout.widths) {
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
    for (auto it = m_layout.merges.rbegin(); it != m_layout.merges.rend(); ++it)
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
        overlaps = overlaps || std::any_of(m_layout.clears.begin(), m_layout.clears.end(),
                                           [&](const CellRange &r) { return r.intersects(range); });
        overlaps = overlaps || m_written.intersects(range);
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
        const bool over = range && (m_written.intersects(*range) ||
                                    std::any_of(m_layout.clears.begin(), m_layout.clears.end(),
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

} // namespace quorvale::xlsx
