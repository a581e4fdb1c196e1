#pragma once

#include <functional>

class QPageLayout;
class QPrinter;
class QWidget;

namespace quorvale {

class Printer;

enum class PreviewResult {
    Printed,   // the user printed or saved from the preview
    Closed,    // the preview was closed without printing
    NotOpened, // ready said no
};

// Shows a print preview of what job draws on the paper of `layout`; from
// there the user prints or saves a PDF. The job runs again whenever the
// preview needs its pages (at opening, on page setup, for the final print),
// so it asks nothing: ready runs once on the preview's printer before the
// window opens, and false opens nothing. The paper the preview ended with
// is given back in `layout`. An error thrown by the job closes the preview
// and is rethrown here.
PreviewResult showPrintPreview(QWidget *parent, QPageLayout &layout,
                               const std::function<void(Printer &)> &job,
                               const std::function<bool(Printer &)> &ready = {});

// Printing to a PDF file with the printer's paper and resolution: the file
// is written beside the target, every write checked, and moved into place
// only when complete. Throws RuntimeError naming the cause.
void printToPdfFile(const QPrinter &settings, const std::function<void(Printer &)> &job);

} // namespace quorvale
