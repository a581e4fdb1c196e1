"""Compares every workbook of two folders cell for cell with openpyxl: the
same sheets in the same order, the same values and number formats."""
import pathlib
import sys

import openpyxl


def cells(path):
    book = openpyxl.load_workbook(path)
    return [(sheet.title, [[(c.value, c.number_format) for c in row] for row in sheet.iter_rows()])
            for sheet in book.worksheets]


def main(first, second):
    names = sorted(p.name for p in pathlib.Path(first).glob("*.xlsx"))
    if not names:
        sys.exit("same-workbooks: no workbooks in " + first)
    for name in names:
        a, b = cells(pathlib.Path(first, name)), cells(pathlib.Path(second, name))
        if [t for t, _ in a] != [t for t, _ in b]:
            sys.exit(f"same-workbooks: {name}: sheets {[t for t, _ in a]} and {[t for t, _ in b]}")
        for (title, rows_a), (_, rows_b) in zip(a, b):
            if rows_a != rows_b:
                for r, (ra, rb) in enumerate(zip(rows_a, rows_b), 1):
                    if ra != rb:
                        sys.exit(f"same-workbooks: {name} [{title}] row {r}: {ra} != {rb}")
                sys.exit(f"same-workbooks: {name} [{title}]: {len(rows_a)} rows and {len(rows_b)}")


if __name__ == "__main__":
    main(*sys.argv[1:])
