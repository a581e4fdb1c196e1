#include "output/windows/previewgrid.h"

#include "ui/printerpreview.h"
#include "ui/waitpointer.h"

#include <QApplication>

namespace quorvale {

PreviewResult PreviewGrid(QWidget *parent, const Desktop &desktop, QPageLayout &layout,
                          const ReportTable &table, const PrintLook &look,
                          const PrintTitles &titles, bool signature, int trailing,
                          const PrintProgress &progress)
{
    if (desktop.printer) {
        desktop.printer([&](Printer &printer) {
            PrintGrid(printer, table, look, titles, signature, trailing, progress);
        });
        return PreviewResult::Printed;
    }
    // The preview draws its pages again on every page setup and for the
    // final print; the question belongs to the print, not to each drawing.
    // No icon, on purpose: the user may well want the clipped print.
    return showPrintPreview(
        parent, layout,
        [&](Printer &printer) {
            const WaitPointer waiting;
            PrintGrid(printer, table, look, titles, signature, trailing, progress);
        },
        [&](Printer &printer) {
            if (tableFitsPaper(printer, table, trailing))
                return true;
            if (desktop.msgBox(paperTooNarrowQuestion(), vb::YesNo) == vb::Yes)
                return false;
            // The closed box's place is painted over before the long layout starts.
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            return true;
        });
}

} // namespace quorvale
