#include "xlsx/xlsxsheetstream.h"

#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxsheetneighbours.h"
#include "xlsx/xlsxsheetwriter.h"

namespace quorvale::xlsx {

SheetStream::SheetStream(const Target &target, SheetLayout &layout, StyleSheet &styles)
{
    SheetWriter::RowHook hook;
    if (!target.original.isEmpty()) {
        m_neighbours = std::make_unique<SheetNeighbours>(target.package, target.bookPath,
                                                         target.partName, target.sheetName,
                                                         target.date1904);
        m_neighbours->refuseOverlappingPivotTables(layout.bounds());
        hook.rows = &m_neighbours->prepareTables(layout);
        hook.follow = [this, &layout](int row, RowCells &cells) {
            m_neighbours->follow(row, cells, layout);
        };
    }
    m_part = target.package.stream(target.partName);
    m_writer = std::make_unique<SheetWriter>(layout, styles, target.original, target.vocabulary,
                                             target.sheetName, std::move(hook));
    m_writer->begin(m_part->sink());
}

SheetStream::~SheetStream() = default;

void SheetStream::row(int row, RowCells &cells)
{
    m_writer->row(m_part->sink(), row, cells);
}

bool SheetStream::finish()
{
    m_writer->end(m_part->sink());
    m_part->finish();
    return m_writer->overwroteFormulas();
}

} // namespace quorvale::xlsx
