#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace quorvale::xlsx {

class StyleSheet;
struct CellRange;

// What Excel's 审阅 → 保护工作表 leaves in a sheet: while the sheet is
// protected, a cell may be changed only when its format unlocks it. A cell
// without an element of its own takes its row's format, else its column's.
namespace SheetProtection {

bool isProtected(QByteArrayView sheetXml);
// The first locked cell of the range, row by row ("B3"); nullopt when every
// cell of it may be changed.
std::optional<QByteArray> firstLockedCell(QByteArrayView sheetXml, const StyleSheet &styles,
                                          const CellRange &range);

} // namespace SheetProtection

} // namespace quorvale::xlsx
