#pragma once

#include <functional>

class QPrinter;
class QWidget;

namespace quorvale {

class Printer;

// Shows a print preview of what job draws; from there the user prints or
// saves a PDF. The job runs again whenever the preview needs its pages (at
// opening, on page setup, for the final print), so it asks nothing: ready
// runs once on the preview's printer before the window opens, and false
// opens nothing. An error thrown by the job closes the preview and is
// rethrown here.
void showPrintPreview(QWidget *parent, const std::function<void(Printer &)> &job,
                      const std::function<bool(Printer &)> &ready = {});

// Printing to a PDF file with the printer's paper and resolution: the file
// is written beside the target, every write checked, and moved into place
// only when complete. Throws RuntimeError naming the cause.
void printToPdfFile(const QPrinter &settings, const std::function<void(Printer &)> &job);

} // namespace quorvale
