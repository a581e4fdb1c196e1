// libxlsxwriter writing the same cells as bench_xlsx, for comparison, and
// the ~10 MB existing workbook the in-place benchmark starts from, in a
// program of its own so that each writer is measured alone.
//
// Usage:
//   bench_xlsx_lxw new ROWS COLS OUT            (default mode: shared strings, all in memory)
//   bench_xlsx_lxw new-constant ROWS COLS OUT   (constant_memory mode: rows written as they
//                                                come, inline strings)
//   bench_xlsx_lxw make-existing OUT
// Prints "seconds <export time>"; peak memory is measured by the caller.

#include "xlsx/xlsxcellinput.h"
#include "xlsxbenchdata.h"

#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <xlsxwriter.h>

using namespace quorvale::xlsx;
using quorvale::bench::cellText;

namespace {

// The same cells through libxlsxwriter: the caller decides each cell's type
// and format, so the typed-input rule is applied here too.
int runLxwNew(int rows, int cols, const char *out, bool constantMemory)
{
    QElapsedTimer timer;
    timer.start();
    lxw_workbook_options options{};
    options.constant_memory = constantMemory ? LXW_TRUE : LXW_FALSE;
    lxw_workbook *book = workbook_new_opt(out, &options);
    lxw_worksheet *sheet = workbook_add_worksheet(book, "Sheet1");
    enum { Plain, Date, DateTime, Quote, Kinds };
    lxw_format *formats[3][Kinds];
    const double sizes[3] = {14, 10, 10.5};
    for (int band = 0; band < 3; ++band) {
        for (int k = 0; k < Kinds; ++k) {
            lxw_format *f = workbook_add_format(book);
            format_set_border(f, LXW_BORDER_THIN);
            format_set_font_size(f, sizes[band]);
            if (band == 0) {
                format_set_align(f, LXW_ALIGN_CENTER);
                format_set_align(f, LXW_ALIGN_VERTICAL_DISTRIBUTED);
            }
            if (k == Date)
                format_set_num_format_index(f, 14);
            if (k == DateTime)
                format_set_num_format(f, "yyyy-mm-dd hh:mm:ss");
            // This libxlsxwriter has no quote-prefix flag; text is text to it anyway.
            if (k == Quote)
                format_set_font_name(f, "Calibri");
            formats[band][k] = f;
        }
    }
    worksheet_set_column(sheet, 0, lxw_col_t(cols - 1), 1200 / 100.0, nullptr);
    for (int r = 1; r <= rows; ++r) {
        lxw_format **f = formats[r == 1 ? 0 : r <= 3 ? 1 : 2];
        for (int c = 1; c <= cols; ++c) {
            const CellInput in = CellInput::interpret(cellText(r, c));
            const lxw_row_t row = lxw_row_t(r - 1);
            const lxw_col_t col = lxw_col_t(c - 1);
            switch (in.kind) {
            case CellInput::Kind::Empty: worksheet_write_blank(sheet, row, col, f[Plain]); break;
            case CellInput::Kind::Number: worksheet_write_number(sheet, row, col, in.number, f[Plain]); break;
            case CellInput::Kind::Date: worksheet_write_number(sheet, row, col, in.number, f[Date]); break;
            case CellInput::Kind::DateTime: worksheet_write_number(sheet, row, col, in.number, f[DateTime]); break;
            case CellInput::Kind::Text:
            case CellInput::Kind::QuotedText:
                worksheet_write_string(sheet, row, col, in.text.toUtf8().constData(),
                                       f[in.kind == CellInput::Kind::Text ? Plain : Quote]);
                break;
            }
        }
    }
    const lxw_error rc = workbook_close(book);
    std::printf("seconds %.3f\n", timer.elapsed() / 1000.0);
    return rc == LXW_NO_ERROR ? 0 : 1;
}

// A stand-in for a company workbook that has grown over the years: five
// sheets of ledger rows, about 10 MB on disk.
int makeExisting(const char *out)
{
    lxw_workbook *book = workbook_new(out);
    lxw_format *money = workbook_add_format(book);
    format_set_num_format(money, "#,##0.00");
    for (int s = 1; s <= 5; ++s) {
        const QByteArray name = "台账" + QByteArray::number(s);
        lxw_worksheet *sheet = workbook_add_worksheet(book, name.constData());
        for (lxw_row_t r = 0; r < 33000; ++r) {
            for (lxw_col_t c = 0; c < 12; ++c) {
                if (c % 3 == 0)
                    worksheet_write_string(sheet, r, c, cellText(int(r) + 2, int(c) + 1).toUtf8().constData(), nullptr);
                else
                    worksheet_write_number(sheet, r, c, double((r * 131 + c * 17) % 100000) / 7.0, money);
            }
        }
    }
    return workbook_close(book) == LXW_NO_ERROR ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc >= 5 && (std::strcmp(argv[1], "new") == 0 || std::strcmp(argv[1], "new-constant") == 0))
        return runLxwNew(std::atoi(argv[2]), std::atoi(argv[3]), argv[4],
                         std::strcmp(argv[1], "new-constant") == 0);
    if (argc >= 3 && std::strcmp(argv[1], "make-existing") == 0)
        return makeExisting(argv[2]);
    std::fprintf(stderr,
                 "usage: bench_xlsx_lxw new|new-constant ROWS COLS OUT | make-existing OUT\n");
    return 2;
}
