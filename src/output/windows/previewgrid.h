#pragma once

#include "output/gridprint.h"
#include "ui/desktop.h"
#include "ui/printerpreview.h"

class QWidget;

namespace quorvale {

// A report window's print: the table in a print preview on the paper of
// `layout`, from where the user prints or saves a PDF. A table wider than
// the paper asks first whether to change the paper; Yes opens nothing
// (NotOpened), so the caller can offer the page setup. While the engine lays
// out and prints, the pointer waits and `progress` hears of every page.
// A desktop with a printer of its own prints there instead, asking nothing.
PreviewResult PreviewGrid(QWidget *parent, const Desktop &desktop, QPageLayout &layout,
                          const ReportTable &table, const PrintLook &look,
                          const PrintTitles &titles, bool signature, int trailing,
                          const PrintProgress &progress = {});

} // namespace quorvale
