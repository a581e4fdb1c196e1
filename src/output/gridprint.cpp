#include "output/gridprint.h"

#include "runtime/textwidth.h"
#include "runtime/printer.h"
#include "runtime/runtimeerror.h"
#include "runtime/twips.h"
#include "runtime/vb.h"

#include <QDate>
#include <QHash>
#include <algorithm>
#include <array>
#include <cmath>

namespace quorvale {

namespace {

// Where the printed columns of one table sit on the paper, in twips.
struct GridPrintTable {
    const ReportTable *table = nullptr;
    double left = 0; // negative when the table is wider than the paper
    QVector<double> widths;
    double rowPitch = 0;

    double width() const;
    double columnLeft(int column) const;
};

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

// Amounts, dates and other figures: a figure cut short reads as another one.
bool isFigure(const QString &text)
{
    static const QString signs = QStringLiteral("+-.,:/% ");
    bool digit = false;
    for (const QChar c : text) {
        if (c.isDigit())
            digit = true;
        else if (!signs.contains(c))
            return false;
    }
    return digit;
}

// A text's width as the sum of its characters' advances, each measured once:
// laying out every cell in full would cost as much as drawing it. Kerning and
// ligatures only narrow a text, so what this says fits, fits. One object
// serves one font (and its smaller sizes).
class TextAdvances {
  public:
    // prefix()[n] is the width of the first n characters; false when the
    // text has characters outside the basic plane, which only a full
    // layout measures.
    bool measure(Printer &printer, const QString &text)
    {
        m_prefix.resize(text.size() + 1);
        m_prefix[0] = 0;
        for (qsizetype i = 0; i < text.size(); ++i) {
            const QChar c = text.at(i);
            if (c.isSurrogate())
                return false;
            m_prefix[i + 1] = m_prefix[i] + advance(printer, c);
        }
        return true;
    }
    const QVector<double> &prefix() const { return m_prefix; }

    // The font in a smaller size, kept: a new font is loaded afresh each time.
    const QFont &sized(const QFont &font, double size)
    {
        auto found = m_sized.find(size);
        if (found == m_sized.end()) {
            QFont smaller = font;
            smaller.setPointSizeF(size);
            found = m_sized.insert(size, smaller);
        }
        return *found;
    }

  private:
    double advance(Printer &printer, QChar c)
    {
        if (c.unicode() < m_ascii.size()) {
            double &known = m_ascii[c.unicode()];
            if (known < 0)
                known = printer.TextWidth(QString(c));
            return known;
        }
        auto found = m_others.constFind(c.unicode());
        if (found == m_others.cend())
            found = m_others.insert(c.unicode(), printer.TextWidth(QString(c)));
        return *found;
    }

    std::array<double, 128> m_ascii = filledWith(-1);
    QHash<char16_t, double> m_others;
    QVector<double> m_prefix;
    QHash<double, QFont> m_sized;

    static std::array<double, 128> filledWith(double value)
    {
        std::array<double, 128> a;
        a.fill(value);
        return a;
    }
};

struct Band {
    double top, height;
    double textTop; // of a line in the body font, centred in the band
};

// The longest start of the text no wider than the width, from a guess.
QString fittingStart(Printer &printer, const QString &text, double width, qsizetype guess)
{
    qsizetype fits = std::clamp<qsizetype>(guess, 0, text.size() - 1);
    while (fits > 0 && (text.at(fits - 1).isHighSurrogate() ||
                        printer.TextWidth(text.left(fits)) > width))
        --fits;
    return text.left(fits);
}

// One cell's text inside its column, as the grid on screen shows it: a text
// wider than the column is cut at its right rule (only what fits is drawn,
// so the PDF's text layer holds no more); a figure is never cut but printed
// in smaller sizes of the same font until it fits, as Excel's shrink to fit.
void printInColumn(Printer &printer, TextAdvances &advances, const QString &text, double left,
                   double width, const Band &band, bool centred)
{
    const bool surrogates = !advances.measure(printer, text);
    const QVector<double> &prefix = advances.prefix();
    double shownWidth = surrogates || centred ? printer.TextWidth(text) : prefix.last();
    // Near the width, the laid-out text decides; far beyond it, the sum does.
    if (!surrogates && !centred && shownWidth > width && shownWidth <= width * 1.05)
        shownWidth = printer.TextWidth(text);
    QString shown = text;
    const QFont font = printer.font();
    const double size = font.pointSizeF();
    if (shownWidth > width) {
        if (isFigure(text)) {
            // Straight to the size that should fit, then down until it does.
            double smaller = std::max(1.0, std::floor(size * width / shownWidth * 2) / 2);
            for (;;) {
                printer.setFont(advances.sized(font, smaller));
                shownWidth = printer.TextWidth(text);
                if (shownWidth <= width || smaller <= 1)
                    break;
                smaller = std::max(1.0, smaller - 0.5);
            }
        } else {
            const qsizetype guess =
                std::upper_bound(prefix.begin(), prefix.end(), width) - prefix.begin() - 1;
            shown = fittingStart(printer, text, width, surrogates ? text.size() - 1 : guess);
            shownWidth = printer.TextWidth(shown);
        }
    }
    if (!shown.isEmpty()) {
        printer.setCurrentX(centred ? left + (width - shownWidth) / 2 : left);
        printer.setCurrentY(printer.FontSize() == size ? band.textTop
                                                       : centredTop(printer, band.top, band.height));
        printer.Print(shown);
    }
    if (printer.FontSize() != size)
        printer.setFont(font);
}

void printRowTexts(Printer &printer, const GridPrintTable &table, int row, double rowTop,
                   TextAdvances &advances, QStringList &cells)
{
    const Band band{rowTop, table.rowPitch, centredTop(printer, rowTop, table.rowPitch)};
    table.table->readRow(row, cells);
    for (int c = 0; c < table.widths.size(); ++c) {
        const QString &text = cells[c];
        if (!text.isEmpty())
            printInColumn(printer, advances, text, table.columnLeft(c), table.widths[c], band,
                          false);
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

// Sets the heading font and returns its line height.
double LineHeight(Printer &printer)
{
    printer.setFontName(kHeadingFont);
    printer.setFontSize(kHeadingSize);
    return printer.TextHeight(QStringLiteral("中"));
}

// Line height in the printer's current font.
double BodyLineHeight(Printer &printer)
{
    return printer.TextHeight(QStringLiteral("中"));
}

// The heading block of a page: company, title and second line, from the
// top of the page; returns the y below it. The body font stays set.
double PrintHeadingBlock(Printer &printer, const PrintTitles &titles, const QString &bodyFontName,
                         double bodyFontSize)
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
    return tableTop;
}

// Heading block and column-heading row of one page, from the top of the
// page; returns the y of the table's top rule. The body font stays set.
double PrintPageHeader(Printer &printer, const PrintTitles &titles, const QString &bodyFontName,
                       double bodyFontSize, const GridPrintTable &table)
{
    const double tableTop = PrintHeadingBlock(printer, titles, bodyFontName, bodyFontSize);
    const Band band{tableTop, table.rowPitch, centredTop(printer, tableTop, table.rowPitch)};
    TextAdvances advances;
    for (int c = 0; c < table.widths.size(); ++c) {
        const QString text = table.table->text(0, c);
        if (!text.isEmpty())
            printInColumn(printer, advances, text, table.columnLeft(c), table.widths[c], band,
                          true);
    }
    const double right = table.left + table.width();
    printer.Line(table.left, tableTop, right, tableTop);
    printer.Line(table.left, tableTop + table.rowPitch, right, tableTop + table.rowPitch);
    printer.setCurrentX(0);
    printer.setCurrentY(tableTop + table.rowPitch);
    return tableTop;
}

// Footer of one page; y is the position below the page's last row.
void PrintPageFooter(Printer &printer, const QDate &printedOn, double left, double tableWidth,
                     bool signature, int page, int pageCount, double y)
{
    const double h = printer.TextHeight(QStringLiteral("的"));
    const double innerWidth = printer.ScaleWidth();

    const QString date = kPrintDate + printedOn.toString(QStringLiteral("yyyy-MM-dd"));
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

void printTable(Printer &printer, GridPrintTable table, const PrintLook &look,
                const PrintTitles &titles, bool signature, const PrintProgress &progress,
                const ExtraPages &extra)
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
    pageCount += extra.count;

    const QString bodyFont = look.font.family();
    const double bodySize = bodyFontSize(look.font);
    TextAdvances advances;
    QStringList cells;
    int page = 0;
    int onPage = 0;
    double tableTop = 0;
    double y = 0;
    auto startPage = [&] {
        if (page > 0) {
            printColumnRules(printer, table, tableTop, y);
            PrintPageFooter(printer, titles.printedOn, table.left, table.width(), signature, page,
                            pageCount, y);
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
        printRowTexts(printer, table, row, y, advances, cells);
        y += table.rowPitch;
        printer.Line(table.left, y, table.left + table.width(), y);
    }
    // A grid without data rows still prints its heading, so the user sees an empty report.
    if (page == 0)
        startPage();
    printColumnRules(printer, table, tableTop, y);
    PrintPageFooter(printer, titles.printedOn, table.left, table.width(), signature, page,
                    pageCount, y);
    for (int i = 0; i < extra.count; ++i) {
        if (progress)
            progress(page, pageCount);
        printer.NewPage();
        ++page;
        const double top = PrintHeadingBlock(printer, titles, bodyFont, bodySize);
        const double bottom = printer.ScaleHeight() - 3 * h;
        extra.draw(printer, i, top, bottom);
        printer.setFontName(bodyFont);
        printer.setFontSize(bodySize);
        printer.setFontBold(false);
        PrintPageFooter(printer, titles.printedOn, table.left, table.width(), signature, page,
                        pageCount, bottom);
    }
    printer.EndDoc();
    if (progress)
        progress(page, pageCount);
}

} // namespace

QString companyTitle()
{
    return kCompany;
}

PrintTitles reportPrintTitles(const QString &officeName, const QDate &from, const QDate &to,
                              const QDate &printedOn)
{
    PrintTitles titles;
    titles.printedOn = printedOn;
    titles.title = QLatin1Char('(') + officeName + QLatin1Char(')') + kPrintTitleSuffix;
    titles.secondLine =
        kDateRange + vbrt::formatChineseDate(from) + QLatin1Char('-') + vbrt::formatChineseDate(to);
    return titles;
}

PrintLook printLookOf(const QFont &font, int dpi)
{
    // The grid's rows are the font's height plus two pixels, as it lays them out.
    return {font, qRound(dotsToTwips(fontMetricsAt(font, dpi).height() + 2, dpi))};
}

QString paperTooNarrowQuestion()
{
    return kTooWide + QLatin1Char('\n') + kChangeSetup;
}

bool tableFitsPaper(Printer &printer, const ReportTable &table, int trailing)
{
    return centredTable(printer, table, trailing).left >= 0;
}

void PrintGrid(Printer &printer, const ReportTable &table, const PrintLook &look,
               const PrintTitles &titles, bool signature, int trailing,
               const PrintProgress &progress, const ExtraPages &extra)
{
    printTable(printer, centredTable(printer, table, trailing), look, titles, signature, progress,
               extra);
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
