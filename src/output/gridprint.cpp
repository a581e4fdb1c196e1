#include "output/gridprint.h"

#include "reports/textwidth.h"
#include "runtime/printer.h"
#include "runtime/printerfonts.h"
#include "runtime/runtimeerror.h"
#include "runtime/twips.h"
#include "runtime/vb.h"

#include <QDate>
#include <QFontMetrics>
#include <QImage>
#include <cmath>

namespace quorvale {

namespace {

const QString kCompany = QStringLiteral("Orrisfield物业管理有限公司");
const QString kHeadingFont = QStringLiteral("宋体");
const QString kPrintDate = QStringLiteral("打印日期 ");
const QString kSignature = QStringLiteral("审核                制单              ");
const QString kTooWide = QStringLiteral("纸张宽度不够，请设置更宽的纸张或把纸张改成横向打印");
const QString kChangeSetup = QStringLiteral("是否要修改打印设置？");
const QString kPrintTitleSuffix = QStringLiteral("收款日报表");
const QString kDateRange = QStringLiteral("日期范围:");
constexpr double kHeadingSize = 16;
constexpr double kRowPitchExtra = 45;

QString pageText(int page, int pageCount)
{
    return QStringLiteral("第%1页 共%2页").arg(page).arg(pageCount);
}

double bodyFontSize(const QFont &font)
{
    const double size = font.pointSizeF();
    return size > 0 ? size : 9.0;
}

// Text top for a line of the current font centred in a band.
double centredTop(Printer &printer, double bandTop, double bandHeight)
{
    return bandTop + (bandHeight - printer.TextHeight()) / 2;
}

void printRowTexts(Printer &printer, const GridPrintTable &table, int row, double rowTop)
{
    const double textTop = centredTop(printer, rowTop, table.rowPitch);
    for (int c = 0; c < table.widths.size(); ++c) {
        const QString text = table.table->text(row, c);
        if (text.isEmpty())
            continue;
        printer.setCurrentX(table.columnLeft(c));
        printer.setCurrentY(textTop);
        printer.Print(text);
    }
}

// Vertical rules of one page, from the heading row's top rule to the last row.
void printColumnRules(Printer &printer, const GridPrintTable &table, double top, double bottom)
{
    for (int c = 0; c <= table.widths.size(); ++c) {
        const double x = table.columnLeft(c);
        printer.Line(x, top, x, bottom);
    }
}

// The printed columns centred on the printer's paper; left is negative when
// the table is wider than the paper.
GridPrintTable centredTable(Printer &printer, const ReportTable &source, int trailing)
{
    GridPrintTable table;
    table.table = &source;
    const int printed = qMax(0, source.cols() - trailing);
    for (int c = 0; c < printed; ++c)
        table.widths.append(float(source.colWidth(c)));
    table.left = (printer.ScaleWidth() - table.width()) / 2;
    return table;
}

} // namespace

PrintTitles reportPrintTitles(const QString &officeName, const QDate &from, const QDate &to)
{
    PrintTitles titles;
    titles.title = QLatin1Char('(') + officeName + QLatin1Char(')') + kPrintTitleSuffix;
    titles.secondLine =
        kDateRange + vbrt::formatChineseDate(from) + QLatin1Char('-') + vbrt::formatChineseDate(to);
    return titles;
}

PrintLook printLookOf(const QFont &font, int dpi)
{
    // The grid's rows are the font's height plus two pixels, as it lays them out.
    ensureCjkFontSubstitutes();
    QImage device(1, 1, QImage::Format_ARGB32);
    const int dotsPerMeter = qRound(dpi / 0.0254);
    device.setDotsPerMeterX(dotsPerMeter);
    device.setDotsPerMeterY(dotsPerMeter);
    const QFontMetrics metrics(font, &device);
    return {font, qRound(dotsToTwips(metrics.height() + 2, device.logicalDpiX()))};
}

QString paperTooNarrowQuestion()
{
    return kTooWide + QLatin1Char('\n') + kChangeSetup;
}

bool tableFitsPaper(Printer &printer, const ReportTable &table, int trailing)
{
    return centredTable(printer, table, trailing).left >= 0;
}

double GridPrintTable::width() const
{
    double total = 0;
    for (double w : widths)
        total += w;
    return total;
}

double GridPrintTable::columnLeft(int column) const
{
    double x = left;
    for (int c = 0; c < column && c < widths.size(); ++c)
        x += widths[c];
    return x;
}

double LineHeight(Printer &printer)
{
    printer.setFontName(kHeadingFont);
    printer.setFontSize(kHeadingSize);
    return printer.TextHeight(QStringLiteral("中"));
}

double BodyLineHeight(Printer &printer)
{
    return printer.TextHeight(QStringLiteral("中"));
}

double PrintPageHeader(Printer &printer, const PrintTitles &titles, const QString &bodyFontName,
                       double bodyFontSize, const GridPrintTable &table)
{
    const double innerWidth = printer.ScaleWidth();
    printer.setFontSize(kHeadingSize);
    printer.setFontName(kHeadingFont);
    printer.setFontBold(true);
    printer.setCurrentX((innerWidth - printer.TextWidth(kCompany)) / 2);
    printer.setCurrentY(0);
    printer.Print(kCompany);

    const double afterCompany = printer.CurrentY();
    printer.setCurrentX((innerWidth - printer.TextWidth(titles.title)) / 2);
    printer.setCurrentY(afterCompany + printer.TextHeight(QStringLiteral("中")) / 2);
    printer.Print(titles.title);
    const double emptyLineTop = printer.CurrentY();
    printer.Print();
    const double tableTop = printer.CurrentY();

    printer.setFontSize(bodyFontSize);
    printer.setFontName(bodyFontName);
    printer.setFontBold(false);
    // The second line sits in the empty line's band, leaving the page room
    // for as many rows as the page count promises.
    if (!titles.secondLine.isEmpty()) {
        printer.setCurrentX((innerWidth - printer.TextWidth(titles.secondLine)) / 2);
        printer.setCurrentY(centredTop(printer, emptyLineTop, tableTop - emptyLineTop));
        printer.Print(titles.secondLine);
    }

    const double textTop = centredTop(printer, tableTop, table.rowPitch);
    for (int c = 0; c < table.widths.size(); ++c) {
        const QString text = table.table->text(0, c);
        printer.setCurrentX(table.columnLeft(c) + (table.widths[c] - printer.TextWidth(text)) / 2);
        printer.setCurrentY(textTop);
        printer.Print(text);
    }
    const double right = table.left + table.width();
    printer.Line(table.left, tableTop, right, tableTop);
    printer.Line(table.left, tableTop + table.rowPitch, right, tableTop + table.rowPitch);
    printer.setCurrentX(0);
    printer.setCurrentY(tableTop + table.rowPitch);
    return tableTop;
}

void PrintPageFooter(Printer &printer, double left, double tableWidth, bool signature, int page,
                     int pageCount, double y)
{
    const double h = printer.TextHeight(QStringLiteral("的"));
    const double innerWidth = printer.ScaleWidth();

    const QString date = kPrintDate + vbrt::Date().toString(QStringLiteral("yyyy-MM-dd"));
    printer.setCurrentX(left + tableWidth - printer.TextWidth(date));
    printer.setCurrentY(y + h);
    printer.Print(date);

    if (signature) {
        printer.setCurrentX((innerWidth - printer.TextWidth(kSignature)) / 2.5);
        printer.setCurrentY(y + h);
        printer.Print(kSignature);
    }

    const QString numbering = pageText(page, pageCount);
    printer.setCurrentX((innerWidth - printer.TextWidth(numbering)) / 2);
    printer.setCurrentY(printer.ScaleHeight() - h);
    printer.Print(numbering);
}

namespace {

void printTable(Printer &printer, GridPrintTable table, const PrintLook &look,
                const PrintTitles &titles, bool signature, const PrintProgress &progress)
{
    const ReportTable &source = *table.table;
    const double headingHeight = LineHeight(printer);
    const double bodyHeight = BodyLineHeight(printer);
    const double h = printer.TextHeight(QStringLiteral("的"));
    table.rowPitch = look.rowHeight + kRowPitchExtra;

    const int dataRows = source.rows() - 1;
    // Integer division of the classic kind: both sides rounded half to even first.
    const qint64 room =
        qint64(std::nearbyint(printer.ScaleHeight() - headingHeight - bodyHeight - 4 * h));
    const qint64 pitch = qint64(std::nearbyint(table.rowPitch));
    const int rowsPerPage = pitch > 0 ? int(room / pitch) : 0;
    int pageCount = 1;
    if (rowsPerPage < dataRows) {
        if (rowsPerPage < 1)
            throw RuntimeError(ErrorNumber::DivisionByZero, QStringLiteral("Division by zero"));
        pageCount = dataRows / rowsPerPage + (dataRows % rowsPerPage >= 1 ? 1 : 0);
    }

    const QString bodyFont = look.font.family();
    const double bodySize = bodyFontSize(look.font);
    int page = 0;
    int onPage = 0;
    double tableTop = 0;
    double y = 0;
    auto startPage = [&] {
        if (page > 0) {
            printColumnRules(printer, table, tableTop, y);
            PrintPageFooter(printer, table.left, table.width(), signature, page, pageCount, y);
            if (progress)
                progress(page, pageCount);
            printer.NewPage();
        }
        tableTop = PrintPageHeader(printer, titles, bodyFont, bodySize, table);
        y = tableTop + table.rowPitch;
        ++page;
        onPage = 1;
    };

    for (int row = 1; row < source.rows(); ++row) {
        if (row == 1 || onPage >= rowsPerPage)
            startPage();
        else
            ++onPage;
        printRowTexts(printer, table, row, y);
        y += table.rowPitch;
        printer.Line(table.left, y, table.left + table.width(), y);
    }
    // A grid without data rows still prints its heading, so the user sees an empty report.
    if (page == 0)
        startPage();
    printColumnRules(printer, table, tableTop, y);
    PrintPageFooter(printer, table.left, table.width(), signature, page, pageCount, y);
    printer.EndDoc();
    if (progress)
        progress(page, pageCount);
}

} // namespace

void PrintGrid(Printer &printer, const ReportTable &table, const PrintLook &look,
               const PrintTitles &titles, bool signature, int trailing,
               const PrintProgress &progress)
{
    printTable(printer, centredTable(printer, table, trailing), look, titles, signature, progress);
}

void AutoFitColumns(ReportTable &table, const TextWidthFn &textWidth)
{
    for (int c = 0; c < table.cols(); ++c) {
        double widest = 0;
        for (int r = 0; r < table.rows(); ++r)
            widest = qMax(widest, textWidth(table.text(r, c)));
        table.setColWidth(c, qRound(widest));
    }
}

} // namespace quorvale
