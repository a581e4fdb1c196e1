#include "support/pdfprinter.h"

#include <QProcess>

namespace quorvale::testing {

PdfFilePrinter::PdfFilePrinter(const QString &path, const QPageLayout &layout)
    : m_printer(Printer::pdf(m_outputs.add(path).device(), layout))
{
}

QString pdfText(const QString &path)
{
    QProcess text;
    text.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), path, QStringLiteral("-")});
    text.waitForFinished(60000);
    return QString::fromUtf8(text.readAllStandardOutput());
}

void PdfFilePrinter::finish()
{
    m_printer->EndDoc();
    m_outputs.commit();
}

} // namespace quorvale::testing
