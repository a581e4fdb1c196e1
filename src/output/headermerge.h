#pragma once

#include <QStringList>
#include <QVector>

namespace quorvale {

// One merged range of the exported header, in sheet coordinates (1-based).
struct HeaderMerge {
    int row1 = 1;
    int col1 = 1;
    int row2 = 1;
    int col2 = 1;

    friend bool operator==(const HeaderMerge &, const HeaderMerge &) = default;
};

// Merges for a two-row header written into sheet rows 1 and 2, one entry per
// exported column. Adjacent columns whose upper texts are equal share one
// group heading, merged across row 1; a column that stands alone and whose
// two rows say the same thing is merged down over rows 1 and 2. Texts are
// compared without surrounding blanks, and empty texts never merge.
QVector<HeaderMerge> headerMerges(const QStringList &upper, const QStringList &lower);

} // namespace quorvale
