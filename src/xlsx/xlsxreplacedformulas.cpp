#include "xlsx/xlsxreplacedformulas.h"

#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxformula.h"
#include "xlsx/xlsxsheetlayout.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>

namespace quorvale::xlsx {

namespace {

[[noreturn]] void badSheet()
{
    throw Error(ErrorNumber::WorkbookError, QStringLiteral("工作簿中的工作表部分已损坏，无法写入"));
}

} // namespace

ReplacedFormulas::ReplacedFormulas(const QByteArray &prefix, const std::vector<CellRange> &cleared,
                                   QString sheetName)
    : m_open("<" + prefix + "f"), m_close("</" + prefix + "f>"), m_cleared(cleared),
      m_sheetName(std::move(sheetName))
{
}

qsizetype ReplacedFormulas::formulaAt(QByteArrayView cell) const
{
    for (qsizetype p = cell.indexOf(m_open); p >= 0; p = cell.indexOf(m_open, p + 1)) {
        const char next = p + m_open.size() < cell.size() ? cell[p + m_open.size()] : 0;
        if (next == '>' || next == ' ' || next == '/')
            return p;
    }
    return -1;
}

void ReplacedFormulas::replaced(int row, int col, QByteArrayView cell)
{
    const qsizetype at = formulaAt(cell);
    if (at < 0)
        return;
    m_anyReplaced = true;
    qsizetype pos = at;
    XmlTag tag;
    XmlText::nextTag(cell, pos, tag);
    const QByteArrayView f = cell.sliced(tag.begin, tag.end - tag.begin);
    const QByteArray type = XmlText::attribute(f, "t").value_or(QByteArray());
    const auto ref = CellRange::parse(XmlText::attribute(f, "ref").value_or(QByteArray()));
    if (!ref)
        return;
    if (type == "array" || type == "dataTable") {
        // The whole array goes when all of its cells are wiped.
        const bool whole = std::any_of(m_cleared.begin(), m_cleared.end(), [&](const CellRange &r) {
            return r.contains(ref->row1, ref->col1) && r.contains(ref->row2, ref->col2);
        });
        if (!whole)
            throw Error(ErrorNumber::WorkbookError,
                        QStringLiteral("工作表“%1”的单元格 %2 中有数组公式（%3），要写入的区域只"
                                       "覆盖了它的一部分，Excel 不能只改写数组的一部分；文件未作"
                                       "修改")
                            .arg(m_sheetName, QString::fromLatin1(XmlText::cellRef(row, col)),
                                 QString::fromLatin1(ref->ref())));
        return;
    }
    if (type != "shared" || tag.selfClosing)
        return;
    const qsizetype close = cell.indexOf(m_close, tag.end);
    if (close < 0)
        badSheet();
    const QByteArray si = XmlText::attribute(f, "si").value_or(QByteArray());
    m_lostMasters.insert(si, {row, col, XmlText::unescape(cell.sliced(tag.end, close - tag.end))});
}

QByteArray ReplacedFormulas::spelledOut(int row, int col, QByteArrayView cell) const
{
    const qsizetype at = formulaAt(cell);
    if (at < 0)
        return {};
    qsizetype pos = at;
    XmlTag tag;
    XmlText::nextTag(cell, pos, tag);
    const QByteArrayView f = cell.sliced(tag.begin, tag.end - tag.begin);
    if (XmlText::attribute(f, "t") != QByteArray("shared"))
        return {};
    const auto master = m_lostMasters.constFind(XmlText::attribute(f, "si").value_or(""));
    if (master == m_lostMasters.cend())
        return {};
    qsizetype end = tag.end;
    if (!tag.selfClosing) {
        end = cell.indexOf(m_close, tag.end);
        if (end < 0)
            badSheet();
        end += m_close.size();
    }
    const QString text = shiftedFormula(master->text, row - master->row, col - master->col);
    const QByteArray open = m_open + '>';
    return cell.first(at).toByteArray() + open + XmlText::escape(text) + m_close +
           cell.sliced(end).toByteArray();
}

} // namespace quorvale::xlsx
