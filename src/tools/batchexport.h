#pragma once

#include "tools/exportrequest.h"

#include <QString>
#include <functional>

namespace quorvale {

// What one batch export wrote.
struct BatchExportResult {
    int rows = 0; // data rows below the header
    QString workbook;
    QString sheet;
    QString pdf;
};

// Stages of a long export, for a progress line: "read" while rows arrive,
// "write" before the workbook is written, "print" before the PDF.
using BatchProgress = std::function<void(const QString &stage, int rows)>;
// Warnings that do not stop the export (a table wider than the paper).
using BatchWarning = std::function<void(const QString &text)>;

// Signs in, checks the office and the inputs as the report window would,
// runs the report's compute procedure into a grid and writes it with the
// export window's rules (every titled column chosen), optionally printing
// it to a PDF. Throws UsageError (bad request), RefusedError (sign-in,
// office or input refused) or RuntimeError (database or file). Nothing is
// left behind on failure: the workbook and the PDF are written whole and
// moved into place together, or neither changes.
struct BatchCallbacks {
    BatchProgress progress;
    BatchWarning warning;
    // Said at once, whatever the outcome: waiting for another writer.
    BatchWarning notice;
};
BatchExportResult runBatchExport(const ExportRequest &request,
                                 const BatchCallbacks &callbacks = {});

} // namespace quorvale
