#include "output/windows/columnchooser.h"

#include "output/gridprint.h"
#include "runtime/vb.h"
#include "ui/flexgrid.h"

namespace quorvale::columnchooser {

namespace {
const QString &markText()
{
    static const QString text = QStringLiteral("√");
    return text;
}
} // namespace

void configure(FlexGrid &chooser, const ReportTable &source, const std::optional<QFont> &fitFont)
{
    const int cols = source.cols();
    chooser.setRows(2);
    chooser.setCols(cols);
    for (int i = 0; i < cols; ++i) {
        chooser.setTextMatrix(0, i, source.text(0, i));
        chooser.setColAlignment(i, source.alignment(i));
        chooser.setColWidth(i, -1);
        chooser.setTextMatrix(1, i, markText());
    }

    if (source.fixedRows() == 2 && source.rows() >= 2) {
        for (int i = 0; i < cols; ++i) {
            const QString upper = chooser.TextMatrix(0, i);
            const QString lower = source.text(1, i);
            if (vbrt::Trim(lower) != vbrt::Trim(upper))
                chooser.setTextMatrix(0, i, upper + QLatin1Char('(') + lower + QLatin1Char(')'));
        }
    }

    if (fitFont)
        chooser.editTable([&chooser, &fitFont](ReportTable &table) {
            AutoFitColumns(table, [&chooser, &fitFont](const QString &text) {
                return chooser.TextWidth(text, *fitFont);
            });
        });

    for (int i = 0; i < cols; ++i) {
        if (chooser.TextMatrix(0, i).isEmpty()) {
            chooser.setColWidth(i, 0);
            chooser.setTextMatrix(1, i, QString());
        }
    }
}

void mark(FlexGrid &chooser, int col)
{
    chooser.setTextMatrix(1, col, markText());
    chooser.setColAlignment(col, FlexAlign::CenterCenter);
}

void unmark(FlexGrid &chooser, int col)
{
    chooser.setTextMatrix(1, col, QString());
}

bool isMarked(const FlexGrid &chooser, int col)
{
    return chooser.TextMatrix(1, col) == markText();
}

QVector<int> chosenColumns(const FlexGrid &chooser, int sourceCols)
{
    QVector<int> chosen;
    const int known = qMin(sourceCols, chooser.Cols());
    for (int i = 0; i < known; ++i) {
        if (isMarked(chooser, i))
            chosen.append(i);
    }
    return chosen;
}

} // namespace quorvale::columnchooser
