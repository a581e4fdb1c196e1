#include "output/windows/previewgrid.h"

#include "ui/msgbox.h"
#include "ui/printerpreview.h"

namespace quorvale {

void PreviewGrid(QWidget *parent, const ReportTable &table, const PrintLook &look,
                 const PrintTitles &titles, bool signature, int trailing)
{
    // The preview draws its pages again on every page setup and for the
    // final print; the question belongs to the print, not to each drawing.
    // No icon, on purpose: the user may well want the clipped print.
    showPrintPreview(
        parent,
        [&](Printer &printer) { PrintGrid(printer, table, look, titles, signature, trailing); },
        [&](Printer &printer) {
            return tableFitsPaper(printer, table, trailing) ||
                   MsgBox(paperTooNarrowQuestion(), vb::YesNo) != vb::Yes;
        });
}

} // namespace quorvale
