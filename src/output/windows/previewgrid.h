#pragma once

#include "output/gridprint.h"

class QWidget;

namespace quorvale {

// A report window's print: the table in a print preview, from where the
// user prints or saves a PDF. A table wider than the paper asks first
// whether to change the paper; Yes opens nothing. While the engine lays out
// and prints, the pointer waits and `progress` hears of every page.
void PreviewGrid(QWidget *parent, const ReportTable &table, const PrintLook &look,
                 const PrintTitles &titles, bool signature, int trailing,
                 const PrintProgress &progress = {});

} // namespace quorvale
