#include "support/pdfprinter.h"

namespace quorvale::testing {

PdfFilePrinter::PdfFilePrinter(const QString &path, const QPageLayout &layout)
    : m_printer(Printer::pdf(m_outputs.add(path).device(), layout))
{
}

void PdfFilePrinter::finish()
{
    m_printer->EndDoc();
    m_outputs.commit();
}

} // namespace quorvale::testing
