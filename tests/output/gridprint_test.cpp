#include "output/gridprint.h"
#include "output/windows/previewgrid.h"
#include "runtime/printer.h"
#include "runtime/runtimeerror.h"
#include "runtime/vb.h"
#include "support/pdfprinter.h"
#include "ui/desktop.h"
#include "ui/flexgrid.h"

#include <QApplication>
#include <QCursor>
#include <QDate>
#include <QFile>
#include <QFileInfo>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>
#include <gtest/gtest.h>

using namespace quorvale;
using quorvale::testing::PdfFilePrinter;

namespace {

const QString kCompany = "Orrisfield物业管理有限公司";
const QString kTitle = "(A01 东湖花园)收款日报表";
const QString kSecond = "日期范围:2024年03月01日-2024年03月31日";
// Every test prints on the same day, whenever it runs.
const QDate kPrintedOn(2026, 1, 5);

// Columns 列头0.. (all but the first left-aligned); row r holds 行r-c in column c.
void fill(FlexGrid &grid, int dataRows, int cols = 4)
{
    QStringList headings;
    for (int c = 0; c < cols; ++c)
        headings << QStringLiteral("列头%1").arg(c);
    grid.setRows(1);
    grid.setFormatString(headings.join(QLatin1String("|<")));
    QVector<QStringList> rows;
    for (int r = 1; r <= dataRows; ++r) {
        QStringList cells;
        for (int c = 0; c < cols; ++c)
            cells << QStringLiteral("行%1-%2").arg(r).arg(c);
        rows.append(cells);
    }
    grid.appendRows(rows);
}

// A printed word and its box in points from the top left of its page.
struct Word {
    QString text;
    double xMin = 0, yMin = 0, xMax = 0, yMax = 0;
};

struct PdfPage {
    double width = 0, height = 0;
    QList<Word> words;

    // Blanks aside, since a blank or a change of script splits words.
    bool contains(QString text) const
    {
        QString all;
        for (const Word &w : words)
            all += w.text;
        return all.contains(text.remove(QLatin1Char(' ')));
    }
    Word word(const QString &text) const
    {
        for (const Word &w : words) {
            if (w.text == text)
                return w;
        }
        ADD_FAILURE() << "no word " << text.toStdString();
        return {};
    }
};

// The words of each page with their positions, as pdftotext -bbox reads
// them; pdftotext (poppler-utils) is a test dependency.
QList<PdfPage> pdfPages(const QString &path)
{
    const QString tool = QStandardPaths::findExecutable("pdftotext");
    if (tool.isEmpty()) {
        ADD_FAILURE() << "pdftotext (poppler-utils) is needed to read printed pages";
        return {};
    }
    QProcess process;
    process.start(tool, {"-bbox", path, "-"});
    process.waitForFinished(60000);
    static const QRegularExpression pageTag(
        QString::fromLatin1(R"x(<page width="([\d.]+)" height="([\d.]+)">)x"));
    static const QRegularExpression wordTag(QString::fromLatin1(
        R"x(<word xMin="([-\d.]+)" yMin="([-\d.]+)" xMax="([-\d.]+)" yMax="([-\d.]+)">(.*)</word>)x"));
    QList<PdfPage> pages;
    for (const QString &line : QString::fromUtf8(process.readAllStandardOutput()).split('\n')) {
        if (const auto m = pageTag.match(line); m.hasMatch()) {
            pages.append({m.captured(1).toDouble(), m.captured(2).toDouble(), {}});
        } else if (const auto w = wordTag.match(line); w.hasMatch() && !pages.isEmpty()) {
            pages.last().words.append({w.captured(5), w.captured(1).toDouble(),
                                       w.captured(2).toDouble(), w.captured(3).toDouble(),
                                       w.captured(4).toDouble()});
        }
    }
    return pages;
}

struct Printed {
    QList<PdfPage> pages; // none when nothing was written
    QVector<MsgBoxCall> boxes;
    bool previewOpened = false;
    QStringList progress; // "page/pages waiting|arrow" as each page was told
};

// Runs print with the path of a PDF file, answering every question with
// answer, and reads back what it wrote.
Printed printed(int answer,
                const std::function<void(const QString &pdf, Printed &, const Desktop &)> &print)
{
    Printed result;
    QTemporaryDir dir;
    const QString path = dir.filePath("out.pdf");
    Desktop desktop;
    desktop.answerBox = [&](const MsgBoxCall &call) {
        result.boxes.append(call);
        return answer;
    };
    print(path, result, desktop);
    if (QFileInfo(path).size() > 0)
        result.pages = pdfPages(path);
    return result;
}

Printed printToPdf(const FlexGrid &grid, bool signature, int trailing)
{
    return printed(vb::No, [&](const QString &pdf, Printed &, const Desktop &) {
        PdfFilePrinter printer(pdf);
        PrintGrid(*printer, grid.table(), grid.printLook(), {kTitle, kSecond, kPrintedOn},
                  signature, trailing);
        printer.finish();
    });
}

// Prints through the preview window as a user does: when the preview opens,
// its print button prints into the PDF file.
Printed previewAndPrint(const FlexGrid &grid, int answer)
{
    return printed(answer, [&](const QString &pdf, Printed &result, const Desktop &desktop) {
        // Watches for the preview rather than guessing when it opens.
        QTimer watch;
        watch.setInterval(10);
        QObject::connect(&watch, &QTimer::timeout, [&] {
            auto *dialog = qobject_cast<QPrintPreviewDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            watch.stop();
            result.previewOpened = true;
            dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog->printer()->setOutputFileName(pdf);
            dialog->findChild<QPrintPreviewWidget *>()->print();
            dialog->accept();
        });
        watch.start();
        QPageLayout layout = Printer::defaultPageLayout();
        PreviewGrid(nullptr, desktop, layout, grid.table(), grid.printLook(),
                    {kTitle, kSecond, kPrintedOn}, false, 0, [&](int page, int pageCount) {
                        const QCursor *pointer = QApplication::overrideCursor();
                        result.progress << QStringLiteral("%1/%2 %3").arg(page).arg(pageCount).arg(
                            pointer && pointer->shape() == Qt::WaitCursor ? "waiting" : "arrow");
                    });
        QCoreApplication::processEvents();
    });
}

double paperWidth()
{
    QTemporaryDir dir;
    return PdfFilePrinter(dir.filePath("metrics.pdf"))->ScaleWidth();
}

} // namespace

TEST(GridPrint, PagesBreakAtTheComputedRowCount)
{
    // The rows a page takes, as a long print shows them on its first page.
    FlexGrid grid;
    fill(grid, 200);
    const QList<PdfPage> longPrint = printToPdf(grid, false, 0).pages;
    ASSERT_GT(longPrint.size(), 2);
    int perPage = 0;
    while (longPrint[0].contains(QStringLiteral("行%1-0").arg(perPage + 1)))
        ++perPage;
    ASSERT_GT(perPage, 10);
    EXPECT_TRUE(longPrint[1].contains(QStringLiteral("行%1-0").arg(perPage + 1)));
    EXPECT_EQ(longPrint.size(), (200 + perPage - 1) / perPage);

    struct Case {
        int dataRows;
        int pages;
    };
    // A grid of its header row alone still prints its heading page.
    for (const Case &c : {Case{0, 1}, Case{perPage - 1, 1}, Case{perPage, 1}, Case{perPage + 1, 2},
                          Case{2 * perPage + 1, 3}}) {
        SCOPED_TRACE(c.dataRows);
        fill(grid, c.dataRows);
        const Printed printed = printToPdf(grid, false, 0);
        EXPECT_TRUE(printed.boxes.isEmpty());
        ASSERT_EQ(printed.pages.size(), c.pages);
        for (int p = 0; p < c.pages; ++p) {
            const PdfPage &page = printed.pages[p];
            for (const QString &expected :
                 {kCompany, kTitle, kSecond, QStringLiteral("列头0"), QStringLiteral("列头3"),
                  QStringLiteral("第%1页 共%2页").arg(p + 1).arg(c.pages)}) {
                EXPECT_TRUE(page.contains(expected))
                    << "page " << p + 1 << " lacks " << expected.toStdString();
            }
        }
        // Each data row on exactly one page, the first rows of page 2 where they belong.
        const QString lastRow = QStringLiteral("行%1-0").arg(c.dataRows);
        EXPECT_EQ(printed.pages.last().contains(lastRow), c.dataRows > 0);
        if (c.pages > 1) {
            EXPECT_TRUE(printed.pages[0].contains(QStringLiteral("行%1-0").arg(perPage)));
            EXPECT_FALSE(printed.pages[0].contains(QStringLiteral("行%1-0").arg(perPage + 1)));
            EXPECT_TRUE(printed.pages[1].contains(QStringLiteral("行%1-0").arg(perPage + 1)));
        }
    }
}

// Two trailing columns are left out: neither measured nor printed.
TEST(GridPrint, FooterMeetsTheTablesRightEdgeAndCentresThePageNumberAtTheFoot)
{
    FlexGrid grid;
    fill(grid, 3, 6);
    const int widths[] = {2000, 1500, 2500, 1000, 3000, 3000};
    for (int c = 0; c < 6; ++c)
        grid.setColWidth(c, widths[c]);
    QTemporaryDir dir;
    PdfFilePrinter paper(dir.filePath("metrics.pdf"));
    paper->setFontName(grid.font().family());
    paper->setFontSize(grid.font().pointSizeF());
    const double signatureWidth = paper->TextWidth("审核                制单              ");
    const double points = 1.0 / 20; // twips to points

    for (bool signature : {false, true}) {
        SCOPED_TRACE(signature);
        const Printed printed = printToPdf(grid, signature, 2);
        ASSERT_EQ(printed.pages.size(), 1);
        const PdfPage &page = printed.pages[0];
        for (int c = 0; c < 6; ++c) {
            EXPECT_EQ(page.contains(QStringLiteral("列头%1").arg(c)), c < 4) << c;
            EXPECT_EQ(page.contains(QStringLiteral("行2-%1").arg(c)), c < 4) << c;
        }
        // The printable area sits in the middle of the sheet.
        const double marginX = (page.width - paper->ScaleWidth() * points) / 2;
        const double marginY = (page.height - paper->ScaleHeight() * points) / 2;
        const double tableRight = marginX + (paper->ScaleWidth() + 7000) / 2 * points;

        const Word date = page.word("2026-01-05");
        EXPECT_NEAR(date.xMax, tableRight, 0.5);
        EXPECT_TRUE(page.contains("打印日期 2026-01-05"));
        const Word first = page.word("第1页");
        const Word last = page.word("共1页");
        EXPECT_NEAR((first.xMin + last.xMax) / 2, page.width / 2, 0.5);
        EXPECT_NEAR(last.yMax, page.height - marginY, 2);
        EXPECT_EQ(page.contains("制单"), signature);
        if (signature) {
            const Word sign = page.word("审核");
            EXPECT_NEAR(sign.xMin, marginX + (paper->ScaleWidth() - signatureWidth) / 2.5 * points,
                        0.5);
            EXPECT_NEAR(sign.yMin, date.yMin, 0.5);
        }
    }
}

TEST(GridPrint, TableWiderThanThePaperAsksOncePerPrintThroughThePreview)
{
    const double paper = paperWidth();
    const QString prompt = QStringLiteral("纸张宽度不够，请设置更宽的纸张或把纸张改成横向打印\n"
                                          "是否要修改打印设置？");
    struct Case {
        const char *name;
        int overhang; // twips the table is wider than the paper
        int answer;
        bool asks;
        bool prints;
    };
    // Three columns; the last one takes up whatever makes the table the wanted width.
    for (const Case &c : {Case{"exactly as wide", 0, vb::Yes, false, true},
                          Case{"wider, Yes", 1, vb::Yes, true, false},
                          Case{"wider, No", 800, vb::No, true, true}}) {
        SCOPED_TRACE(c.name);
        FlexGrid grid;
        fill(grid, 2, 3);
        grid.setColWidth(0, 2000);
        grid.setColWidth(1, 2000);
        const int last = c.overhang == 0 ? int(std::floor(paper)) - 4000
                                         : int(std::ceil(paper)) - 4000 + c.overhang;
        grid.setColWidth(2, last);
        const Printed printed = previewAndPrint(grid, c.answer);
        EXPECT_EQ(printed.boxes.size(), c.asks ? 1 : 0);
        if (c.asks && !printed.boxes.isEmpty()) {
            EXPECT_EQ(printed.boxes[0].prompt, prompt);
            EXPECT_EQ(printed.boxes[0].style, vb::YesNo);
        }
        EXPECT_EQ(printed.previewOpened, c.prints);
        // Drawn for the preview and again for the print, under the wait pointer.
        const QStringList drawnTwice = {"1/1 waiting", "1/1 waiting"};
        EXPECT_EQ(printed.progress, c.prints ? drawnTwice : QStringList());
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(printed.pages.isEmpty(), !c.prints);
        if (c.prints) {
            ASSERT_EQ(printed.pages.size(), 1);
            // Centred: answering No leaves the first column left of the paper's edge.
            const PdfPage &page = printed.pages[0];
            const double edge = (page.width - paper / 20) / 2;
            const double left = (paper - (4000 + last)) / 2 / 20;
            EXPECT_NEAR(page.word("行2-0").xMin, edge + left, 0.5);
            EXPECT_EQ(page.word("行2-0").xMin < edge - 10, (c.overhang > 0));
        }
    }
}

TEST(GridPrint, PrinterFailureReachesTheCaller)
{
    FlexGrid grid;
    fill(grid, 2);
    EXPECT_THROW(
        {
            PdfFilePrinter printer("/nonexistent-folder/out.pdf");
            PrintGrid(*printer, grid.table(), grid.printLook(), {kTitle, kSecond}, false, 0);
            printer.finish();
        },
        RuntimeError);
}

TEST(GridPrint, AutoFitColumnsTakesTheWidestCell)
{
    // Ten twips and a half a character: the widest wins, rounded.
    const TextWidthFn width = [](const QString &text) { return text.size() * 10.5; };
    ReportTable table;
    table.setFormatString("短|<很长很长的标题|", width);
    table.appendRows({{"一个更长的单元格文本", "短"}});
    AutoFitColumns(table, width);
    EXPECT_EQ(table.colWidth(0), 105);
    EXPECT_EQ(table.colWidth(1), 74);
    EXPECT_EQ(table.colWidth(2), 0);
}

TEST(GridPrint, EveryCellStaysInsideItsColumn)
{
    // Row 1 puts a short word at each column's left edge, where its text starts.
    FlexGrid grid;
    grid.setRows(1);
    grid.setFormatString("<名称|<日期|<金额|<备注");
    grid.appendRows({{"甲", "1", "2", "丙"},
                     {"公共水电分摊费", "2026-11-01", "1234567.89", "公共水电分摊费用"}});
    const int widths[] = {600, 700, 450, 900};
    for (int c = 0; c < 4; ++c)
        grid.setColWidth(c, widths[c]);
    const Printed out = printToPdf(grid, false, 0);
    ASSERT_EQ(out.pages.size(), 1);
    const PdfPage &page = out.pages[0];
    const Word heading = page.word("名称"), first = page.word("甲"), last = page.word("丙");
    const double twip = (last.xMin - first.xMin) / (widths[0] + widths[1] + widths[2]);
    QList<double> rules{first.xMin};
    for (int w : widths)
        rules << rules.last() + w * twip;

    // The words of the heading and of row 2, by their middles, left to right.
    const double pitch = first.yMax - heading.yMax;
    const auto rowAt = [&](double middle) {
        QList<Word> row;
        for (const Word &w : page.words)
            if (std::abs((w.yMin + w.yMax) / 2 - middle) < pitch / 2)
                row << w;
        std::sort(row.begin(), row.end(),
                  [](const Word &a, const Word &b) { return a.xMin < b.xMin; });
        return row;
    };
    const QList<Word> headings = rowAt((heading.yMin + heading.yMax) / 2);
    const QList<Word> second = rowAt((first.yMin + first.yMax) / 2 + pitch);
    for (const QList<Word> *row : {&headings, &second}) {
        ASSERT_EQ(row->size(), 4);
        for (int c = 0; c < 4; ++c) {
            SCOPED_TRACE(row->at(c).text.toStdString());
            EXPECT_GE(row->at(c).xMin, rules[c] - 0.5);
            EXPECT_LE(row->at(c).xMax, rules[c + 1] + 0.5) << "crosses its column's rule";
        }
    }
    // Texts keep what fits; figures are whole, the one too wide in a smaller size.
    EXPECT_TRUE(QStringLiteral("公共水电分摊费").startsWith(second[0].text));
    EXPECT_LT(second[0].text.size(), 7);
    EXPECT_EQ(second[1].text, "2026-11-01");
    EXPECT_EQ(second[2].text, "1234567.89");
    EXPECT_LT(second[2].yMax - second[2].yMin, second[1].yMax - second[1].yMin);
}
