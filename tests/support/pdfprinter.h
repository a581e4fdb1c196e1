#pragma once

#include "runtime/outputset.h"
#include "runtime/printer.h"

#include <QPageLayout>
#include <QString>
#include <memory>

namespace quorvale::testing {

// A printer drawing a PDF file through the program's safe-write path, on
// the paper every target starts with; the file appears on finish().
class PdfFilePrinter {
  public:
    explicit PdfFilePrinter(const QString &path,
                            const QPageLayout &layout = Printer::defaultPageLayout());
    Printer &operator*() { return *m_printer; }
    Printer *operator->() { return m_printer.get(); }
    // Ends the document and moves the file into place.
    void finish();

  private:
    OutputSet m_outputs;
    std::unique_ptr<Printer> m_printer;
};

// A PDF's text as pdftotext lays it out, "" when there is none.
QString pdfText(const QString &path);

} // namespace quorvale::testing
