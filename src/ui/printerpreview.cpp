#include "ui/printerpreview.h"

#include "runtime/outputset.h"
#include "runtime/printer.h"

#include <QPageLayout>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <exception>

namespace quorvale {

void printToPdfFile(const QPrinter &settings, const std::function<void(Printer &)> &job)
{
    OutputSet outputs;
    StagedFile &file = outputs.add(settings.outputFileName());
    try {
        const auto printer = Printer::pdf(file.device(), settings.pageLayout(), settings.resolution());
        job(*printer);
        printer->EndDoc();
    } catch (...) {
        file.checkWrites();
        throw;
    }
    outputs.commit();
}

PreviewResult showPrintPreview(QWidget *parent, QPageLayout &layout,
                               const std::function<void(Printer &)> &job,
                               const std::function<bool(Printer &)> &ready)
{
    QPrinter device(QPrinter::HighResolution);
    device.setPageLayout(layout);
    if (ready) {
        Printer paper(&device);
        if (!ready(paper))
            return PreviewResult::NotOpened;
    }
    QPrintPreviewDialog dialog(&device, parent);
    std::exception_ptr failure;
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, [&](QPrinter *target) {
        if (failure)
            return;
        try {
            if (target->outputFormat() == QPrinter::PdfFormat &&
                !target->outputFileName().isEmpty())
                printToPdfFile(*target, job);
            else {
                Printer printer(target);
                job(printer);
                printer.EndDoc();
            }
        } catch (...) {
            failure = std::current_exception();
            QMetaObject::invokeMethod(&dialog, &QDialog::reject, Qt::QueuedConnection);
        }
    });
    const int answer = dialog.exec();
    if (failure)
        std::rethrow_exception(failure);
    layout = device.pageLayout();
    return answer == QDialog::Accepted ? PreviewResult::Printed : PreviewResult::Closed;
}

} // namespace quorvale
