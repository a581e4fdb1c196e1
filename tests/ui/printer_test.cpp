#include "runtime/printer.h"
#include "runtime/runtimeerror.h"
#include "support/pdfprinter.h"
#include "ui/printerpreview.h"

#include <QApplication>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QPageLayout>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

using namespace quorvale;

TEST(Printer, PrintAndLineMoveThePenLikeTheClassicObject)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("p.pdf"));
    quorvale::testing::PdfFilePrinter printer(path);
    printer->setFontName(QStringLiteral("宋体"));
    printer->setFontSize(16);
    const double line = printer->TextHeight(QStringLiteral("中"));
    EXPECT_GT(printer->TextWidth(QStringLiteral("中中")), printer->TextWidth(QStringLiteral("中")));
    EXPECT_FALSE(QFileInfo::exists(path)) << "nothing drawn, nothing written";

    struct Step {
        const char *what;
        std::function<void()> act;
        double x, y;
    };
    const std::vector<Step> steps = {
        {"text",
         [&] {
             printer->setCurrentX(500);
             printer->setCurrentY(100);
             printer->Print(QStringLiteral("中文"));
         },
         0, 100 + line},
        {"empty line", [&] { printer->Print(); }, 0, 100 + 2 * line},
        {"line", [&] { printer->Line(10, 20, 300, 400); }, 300, 400},
        {"new page", [&] { printer->NewPage(); }, 0, 0},
    };
    for (const Step &step : steps) {
        step.act();
        EXPECT_DOUBLE_EQ(printer->CurrentX(), step.x) << step.what;
        EXPECT_DOUBLE_EQ(printer->CurrentY(), step.y) << step.what;
    }
    EXPECT_EQ(printer->Page(), 2);
    printer.finish();
    EXPECT_GT(QFileInfo(path).size(), 0);
}

TEST(Printer, PreviewHandsJobErrorsToTheCaller)
{
    // Should the preview ever wait for the user, close it rather than hang.
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] {
        if (QWidget *modal = QApplication::activeModalWidget())
            modal->close();
    });
    guard.start(10000);
    QPageLayout layout = Printer::defaultPageLayout();
    EXPECT_THROW(
        showPrintPreview(
            nullptr, layout, [](Printer &) { throw RuntimeError(ErrorNumber::PrinterError, QStringLiteral("Printer error")); }),
        RuntimeError);
}
