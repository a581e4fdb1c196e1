#pragma once

#include "xlsx/xlsxrelationships.h"
#include "xlsx/xlsxsheetlayout.h"

#include <QByteArray>
#include <QString>
#include <vector>

namespace quorvale::xlsx {

class Package;

// The parts that hang off a worksheet and describe its cells (pivot tables,
// tables), and what rewriting a block of those cells does to them.
class SheetNeighbours {
public:
    SheetNeighbours(Package &package, const QString &bookPath, const QString &sheetPart,
                    const QString &sheetName, bool date1904);

    // Excel does not let cells of a pivot table be overwritten, and a reader
    // that refreshes the pivot on opening paints it over them again: a
    // pivot table over the block is refused by name, before anything is
    // written.
    void refuseOverlappingPivotTables(const CellRange &block) const;
    // A table may not contain merged cells: merges written over one are
    // dropped. Returns the tables' header rows, which follow() must see.
    const std::vector<int> &prepareTables(SheetLayout &layout);
    // A table's column names must equal its header cells, as Excel keeps
    // them when header cells are typed over: names follow the new header
    // texts, made non-empty and unique as Excel makes them, and the header
    // cells hold their names as text.
    void follow(int row, RowCells &cells, const SheetLayout &layout);

private:
    struct Table {
        QString part;
        QByteArray xml;
        CellRange range;
        bool hasHeader;
    };
    [[noreturn]] void damaged(const QString &part, const QString &why) const;
    QByteArray readPart(const QString &part) const;
    void renameColumns(Table &table, RowCells &cells, const SheetLayout &layout);

    Package &m_package;
    QString m_bookPath, m_sheetName;
    bool m_date1904;
    std::vector<Relationship> m_relationships;
    std::vector<Table> m_tables;
    std::vector<int> m_headerRows;
};

} // namespace quorvale::xlsx
