#pragma once

#include "xlsx/xlsxsheetlayout.h"

#include <QByteArray>
#include <QString>
#include <memory>

namespace quorvale::xlsx {

class Package;
class PartStream;
class SheetNeighbours;
class SheetWriter;
class StyleSheet;
struct Vocabulary;

// One worksheet part being written, row by row: the writer that merges the
// rows into the sheet's original XML, the compressor behind it, and the
// parts next to the sheet that a rewrite changes. Opening it refuses a
// rewrite that would break a pivot table, before anything is written.
class SheetStream {
public:
    struct Target {
        Package &package;
        QString bookPath, partName, sheetName;
        QByteArray original; // empty for a new sheet
        const Vocabulary &vocabulary;
        bool date1904;
    };

    // The layout must not change while the stream is open.
    SheetStream(const Target &target, SheetLayout &layout, StyleSheet &styles);
    ~SheetStream();
    SheetStream(const SheetStream &) = delete;
    SheetStream &operator=(const SheetStream &) = delete;

    // Rows in ascending order.
    void row(int row, RowCells &cells);
    // Writes the rest and puts the part into the package; true when a formula
    // cell was overwritten (the calculation chain is stale).
    bool finish();

private:
    std::unique_ptr<SheetNeighbours> m_neighbours;
    std::unique_ptr<PartStream> m_part;
    std::unique_ptr<SheetWriter> m_writer;
};

} // namespace quorvale::xlsx
