#include "xlsx/xlsxsheetprotection.h"

#include "xlsx/xlsxsheetlayout.h"
#include "xlsx/xlsxstylesheet.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>
#include <vector>

namespace quorvale::xlsx {

namespace {

struct ColumnFormat {
    int min, max, xf;
};

int columnFormat(const std::vector<ColumnFormat> &columns, int col)
{
    for (const ColumnFormat &c : columns)
        if (col >= c.min && col <= c.max)
            return c.xf;
    return 0;
}

} // namespace

bool SheetProtection::isProtected(QByteArrayView sheetXml)
{
    // The element follows the cells; only the tail of a large sheet is read.
    const qsizetype cellsEnd = sheetXml.lastIndexOf("sheetData");
    qsizetype pos = cellsEnd < 0 ? 0 : cellsEnd;
    XmlTag tag;
    while (XmlText::nextTag(sheetXml, pos, tag))
        if (!tag.closing && tag.localName() == "sheetProtection")
            return XmlText::isTrue(sheetXml.sliced(tag.begin, tag.end - tag.begin), "sheet");
    return false;
}

std::optional<QByteArray> SheetProtection::firstLockedCell(QByteArrayView sheetXml,
                                                           const StyleSheet &styles,
                                                           const CellRange &range)
{
    // A format the part does not have is read as the first, as Excel does.
    const auto isLocked = [&styles](int xf) {
        return styles.isLocked(quint32(xf) < styles.xfCount() ? quint32(xf) : 0);
    };
    std::vector<ColumnFormat> columns;
    std::vector<int> cellFormats(size_t(range.col2 - range.col1 + 1));
    std::optional<QByteArray> locked;
    int row = 0, rowFormat = -1, col = 0;
    int unseen = range.row1; // the first row of the range not met yet
    bool inRange = false;

    const auto checkRow = [&](int r) {
        for (int c = range.col1; c <= range.col2 && !locked; ++c) {
            int xf = cellFormats[size_t(c - range.col1)];
            if (xf < 0)
                xf = rowFormat >= 0 ? rowFormat : columnFormat(columns, c);
            if (isLocked(xf))
                locked = XmlText::cellRef(r, c);
        }
    };
    // Rows the sheet has no element for take their columns' formats.
    const auto checkRowsWithout = [&](int before) {
        if (unseen >= before)
            return;
        rowFormat = -1;
        std::fill(cellFormats.begin(), cellFormats.end(), -1);
        checkRow(unseen);
    };

    qsizetype pos = 0;
    XmlTag tag;
    while (!locked && XmlText::nextTag(sheetXml, pos, tag)) {
        if (tag.closing) {
            if (tag.localName() == "row" && inRange)
                checkRow(row);
            continue;
        }
        const QByteArrayView local = tag.localName();
        const QByteArrayView text = sheetXml.sliced(tag.begin, tag.end - tag.begin);
        if (local == "col") {
            columns.push_back({XmlText::numberAttribute(text, "min", 0),
                               XmlText::numberAttribute(text, "max", 0),
                               XmlText::numberAttribute(text, "style", 0)});
        } else if (local == "row") {
            row = XmlText::numberAttribute(text, "r", row + 1);
            col = 0;
            inRange = row >= range.row1 && row <= range.row2;
            if (!inRange)
                continue;
            checkRowsWithout(row);
            if (locked)
                break;
            unseen = std::max(unseen, row + 1);
            rowFormat = XmlText::isTrue(text, "customFormat")
                            ? XmlText::numberAttribute(text, "s", 0)
                            : -1;
            std::fill(cellFormats.begin(), cellFormats.end(), -1);
            if (tag.selfClosing)
                checkRow(row);
        } else if (local == "c" && inRange) {
            int r = 0, c = 0;
            const auto ref = XmlText::rawAttribute(text, "r");
            col = ref && XmlText::parseCellRef(*ref, r, c) ? c : col + 1;
            if (col >= range.col1 && col <= range.col2)
                cellFormats[size_t(col - range.col1)] = XmlText::numberAttribute(text, "s", 0);
        } else if (local == "sheetData" && tag.selfClosing) {
            break;
        }
    }
    if (!locked)
        checkRowsWithout(range.row2 + 1);
    return locked;
}

} // namespace quorvale::xlsx
