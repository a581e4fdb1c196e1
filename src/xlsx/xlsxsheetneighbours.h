#pragma once

#include "xlsx/xlsxrelationships.h"

#include <QString>
#include <vector>

namespace quorvale::xlsx {

class Package;
class SharedStrings;
class SheetData;
struct CellRange;

// The parts that hang off a worksheet and describe its cells (pivot tables,
// tables), and what rewriting a block of those cells does to them.
class SheetNeighbours {
  public:
    SheetNeighbours(Package &package, const QString &bookPath, const QString &sheetPart,
                    const QString &sheetName);

    // Excel does not let cells of a pivot table be overwritten, and a reader
    // that refreshes the pivot on opening paints it over them again: a
    // pivot table over the written or cleared block is refused by name,
    // before anything is written.
    void refuseOverlappingPivotTables(const SheetData &data) const;
    // A table's column names must equal its header cells, as Excel keeps
    // them when header cells are typed over: names follow the new header
    // texts, made non-empty and unique as Excel makes them, and header cells
    // hold their names as text. Merges written over a table are dropped,
    // since a table may not contain merged cells.
    void followTableHeaders(SheetData &data, SharedStrings &strings, bool date1904);

  private:
    [[noreturn]] void damaged(const QString &part, const QString &why) const;
    QByteArray readPart(const QString &part) const;

    Package &m_package;
    QString m_bookPath, m_sheetName;
    std::vector<Relationship> m_relationships;
};

} // namespace quorvale::xlsx
