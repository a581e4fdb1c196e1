"""Independent reader and fixture maker for the workbook tests (openpyxl).

  xlsx_tool.py dump PATH      -> JSON: sheets, cells, formats, widths, merges, zip entries
  xlsx_tool.py fixture PATH   -> an existing workbook with a chart, formulas, a calc chain,
                                 defined names, merges and a custom part
  xlsx_tool.py fixture-chartsheet PATH -> the same, "Other" hidden and a chart sheet last
  xlsx_tool.py fixture-prefixed PATH   -> a workbook as other writers make it: "x:"
                                 prefixes, rows and cells without references, rich text
  xlsx_tool.py damage-MODE PATH -> the workbook damaged in place: its shared strings
                                 malformed (damage-malformed-strings), missing while cells
                                 refer to them (damage-missing-strings), or inflating to
                                 200 MB (damage-bomb)
  xlsx_tool.py note PATH SHEET CELL TEXT -> one cell written with openpyxl, as a user would
  xlsx_tool.py shape NAME PATH -> a workbook shaped as another program writes it
                                 (workbook_shapes.py)
"""
import datetime
import hashlib
import json
import sys
import zipfile

import openpyxl
from openpyxl.chart import BarChart, Reference
from openpyxl.formatting.rule import CellIsRule
from openpyxl.styles import Font, PatternFill
from openpyxl.workbook.defined_name import DefinedName


def value_json(v):
    if isinstance(v, (datetime.datetime, datetime.date)):
        return v.isoformat()
    return v


def border_json(b):
    return [b.left.style, b.right.style, b.top.style, b.bottom.style]


def chart_json(chart):
    def ref(r):
        if r is None:
            return None
        for kind in ("strRef", "numRef"):
            inner = getattr(r, kind, None)
            if inner is not None:
                return inner.f
        return None
    return {"type": chart.tagname, "direction": getattr(chart, "type", None),
            "grouping": getattr(chart, "grouping", None),
            "series": [{"name": ref(s.tx), "categories": ref(s.cat), "values": ref(s.val)}
                       for s in chart.series]}


def dump(path):
    wb = openpyxl.load_workbook(path)
    out = {"sheets": wb.sheetnames, "data": {}, "entries": {},
           "hidden": [ws.title for ws in wb.worksheets if ws.sheet_state != "visible"],
           "lockStructure": bool(wb.security and wb.security.lockStructure),
           "active": wb.active.title if wb.active else None,
           "names": sorted(f"{d.name}@{wb.sheetnames[d.localSheetId]}"
                           for d in wb.defined_names.definedName if d.localSheetId is not None),
           "printAreas": {ws.title: ws.print_area for ws in wb.worksheets if ws.print_area}}
    for ws in wb.worksheets:
        cells = {}
        for row in ws.iter_rows():
            for c in row:
                if c.value is None and not c.has_style:
                    continue
                cells[c.coordinate] = {
                    "value": value_json(c.value),
                    "type": c.data_type,
                    "format": c.number_format,
                    "isDate": getattr(c, "is_date", False),
                    "quotePrefix": bool(c.quotePrefix),
                    "size": c.font.sz,
                    "bold": bool(c.font.b),
                    "h": c.alignment.horizontal,
                    "v": c.alignment.vertical,
                    "border": border_json(c.border),
                    "locked": bool(c.protection.locked),
                }
        widths = {k: d.width for k, d in ws.column_dimensions.items() if d.customWidth}
        out["data"][ws.title] = {
            "cells": cells,
            "tables": {t.name: [c.name for c in t.tableColumns] for t in ws.tables.values()},
            "links": sorted(c.coordinate for row in ws.iter_rows() for c in row if c.hyperlink),
            "widths": widths,
            "merges": sorted(str(r) for r in ws.merged_cells.ranges),
            "conditional": sorted(str(r.sqref) for r in ws.conditional_formatting),
            "protected": bool(ws.protection.sheet),
            "charts": [chart_json(ch) for ch in ws._charts],
        }
    with zipfile.ZipFile(path) as z:
        for info in z.infolist():
            data = z.read(info.filename)
            out["entries"][info.filename] = {
                "sha": hashlib.sha256(data).hexdigest(),
                "csize": info.compress_size,
                "text": data.decode("utf-8", "replace") if len(data) < 200000 else "",
            }
    json.dump(out, sys.stdout, ensure_ascii=False)


def fixture(path, chart_sheet=False):
    wb = openpyxl.Workbook()
    data = wb.active
    data.title = "Data"
    for r in range(1, 6):
        data.cell(r, 1, f"item{r}")
        data.cell(r, 2, r * 10)
    data["B6"] = "=SUM(B1:B5)"
    data["A1"].font = Font(bold=True, size=13)
    data["C2"].fill = PatternFill("solid", fgColor="FFFF00")
    data.merge_cells("F1:G1")
    data["F1"] = "merged"
    data.column_dimensions["A"].width = 30
    chart = BarChart()
    chart.add_data(Reference(data, min_col=2, min_row=1, max_row=5))
    data.add_chart(chart, "H2")

    other = wb.create_sheet("Other")
    other["A1"] = "other sheet"
    other["A2"] = 3.5

    report = wb.create_sheet("报表")
    report["A1"] = "old header"
    report["B2"] = "old"
    report["C3"] = "=1+2"
    report["H20"] = "keep me"
    report["A30"] = 42
    report["Z1"] = "row one far"
    report.merge_cells("J1:K2")
    report.conditional_formatting.add(
        "H1:H5", CellIsRule(operator="greaterThan", formula=["5"], font=Font(color="FF0000")))
    if chart_sheet:
        other.sheet_state = "hidden"
        chartsheet = wb.create_chartsheet("图表")
        bars = BarChart()
        bars.add_data(Reference(data, min_col=2, min_row=1, max_row=5))
        chartsheet.add_chart(bars)
    wb.defined_names.append(DefinedName("Totals", attr_text="Data!$B$1:$B$5"))
    wb.save(path)

    # openpyxl writes neither a calculation chain nor custom parts: add them.
    with zipfile.ZipFile(path) as z:
        items = [(i, z.read(i.filename)) for i in z.infolist()]
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        for info, content in items:
            if info.filename == "[Content_Types].xml":
                content = content.replace(
                    b"</Types>",
                    b'<Override PartName="/xl/calcChain.xml" ContentType="application/'
                    b'vnd.openxmlformats-officedocument.spreadsheetml.calcChain+xml"/>'
                    b'<Override PartName="/customXml/item1.xml" ContentType="application/xml"/>'
                    b"</Types>")
            elif info.filename == "xl/_rels/workbook.xml.rels":
                content = content.replace(
                    b"</Relationships>",
                    b'<Relationship Id="rId99" Type="http://schemas.openxmlformats.org/'
                    b'officeDocument/2006/relationships/calcChain" Target="calcChain.xml"/>'
                    b"</Relationships>")
            z.writestr(info, content)
        z.writestr("xl/calcChain.xml",
                   '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
                   '<calcChain xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">'
                   '<c r="B6" i="1"/><c r="C3" i="3"/></calcChain>')
        z.writestr("customXml/item1.xml", "<quorvale-test>custom part</quorvale-test>")


MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
RELS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PKG_RELS = "http://schemas.openxmlformats.org/package/2006/relationships"
CT = "application/vnd.openxmlformats-officedocument.spreadsheetml."


def fixture_local_names(path):
    wb = openpyxl.Workbook()
    wb.active.title = "A"
    wb.create_sheet("B")
    last = wb.create_sheet("C")
    last.print_area = "A1:B2"
    wb.defined_names.append(DefinedName("OnA", localSheetId=0, attr_text="A!$A$1"))
    wb.active = 2
    wb.save(path)


def fixture_prefixed(path):
    parts = {
        "[Content_Types].xml":
            '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
            '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="xml" ContentType="application/xml"/>'
            f'<Override PartName="/xl/workbook.xml" ContentType="{CT}sheet.main+xml"/>'
            f'<Override PartName="/xl/worksheets/sheet1.xml" ContentType="{CT}worksheet+xml"/>'
            f'<Override PartName="/xl/styles.xml" ContentType="{CT}styles+xml"/>'
            f'<Override PartName="/xl/sharedStrings.xml" ContentType="{CT}sharedStrings+xml"/>'
            '</Types>',
        "_rels/.rels":
            f'<Relationships xmlns="{PKG_RELS}"><Relationship Id="rId1" '
            f'Type="{RELS}/officeDocument" Target="/xl/workbook.xml"/></Relationships>',
        "xl/workbook.xml":
            f'<x:workbook xmlns:x="{MAIN}" xmlns:rel="{RELS}"><x:sheets>'
            '<x:sheet name="Ledger" sheetId="7" rel:id="R1"/></x:sheets></x:workbook>',
        "xl/_rels/workbook.xml.rels":
            f'<Relationships xmlns="{PKG_RELS}">'
            f'<Relationship Id="R1" Type="{RELS}/worksheet" Target="/xl/worksheets/sheet1.xml"/>'
            f'<Relationship Id="R2" Type="{RELS}/styles" Target="styles.xml"/>'
            f'<Relationship Id="R3" Type="{RELS}/sharedStrings" Target="sharedStrings.xml"/>'
            '</Relationships>',
        "xl/styles.xml":
            f'<x:styleSheet xmlns:x="{MAIN}"><x:numFmts count="1">'
            '<x:numFmt numFmtId="164" formatCode="0.000"/></x:numFmts>'
            '<x:fonts count="2"><x:font><x:sz val="12"/><x:name val="SimSun"/></x:font>'
            '<x:font><x:b/><x:sz val="12"/><x:name val="SimSun"/></x:font></x:fonts>'
            '<x:fills count="1"><x:fill><x:patternFill patternType="none"/></x:fill></x:fills>'
            '<x:borders count="1"><x:border><x:left/><x:right/><x:top/><x:bottom/><x:diagonal/></x:border></x:borders>'
            '<x:cellStyleXfs count="1"><x:xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></x:cellStyleXfs>'
            '<x:cellXfs count="3"><x:xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/>'
            '<x:xf numFmtId="164" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/>'
            '<x:xf numFmtId="0" fontId="1" fillId="0" borderId="0" xfId="0" applyFont="1"/>'
            '</x:cellXfs></x:styleSheet>',
        "xl/sharedStrings.xml":
            f'<x:sst xmlns:x="{MAIN}" count="3" uniqueCount="3">'
            '<x:si><x:t>first</x:t></x:si>'
            '<x:si><x:r><x:rPr><x:b/></x:rPr><x:t>rich</x:t></x:r><x:r><x:t> text</x:t></x:r></x:si>'
            '<x:si><x:t>third</x:t></x:si></x:sst>',
        "xl/worksheets/sheet1.xml":
            f'<x:worksheet xmlns:x="{MAIN}"><x:sheetData>'
            '<x:row spans="1:3"><x:c t="s" s="2"><x:v>0</x:v></x:c><x:c t="s"><x:v>1</x:v></x:c>'
            '<x:c s="1"><x:v>1.5</x:v></x:c></x:row>'
            '<x:row><x:c><x:v>2</x:v></x:c></x:row>'
            '<x:row r="5"><x:c r="D5" t="s"><x:v>2</x:v></x:c></x:row>'
            '</x:sheetData></x:worksheet>',
    }
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        for name, text in parts.items():
            z.writestr(name, text)


def rezip(path, change):
    """Rewrites the zip with change(name, bytes) -> bytes or None (dropped)."""
    with zipfile.ZipFile(path) as z:
        parts = [(i, z.read(i.filename)) for i in z.infolist()]
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        for info, data in parts:
            data = change(info.filename, data)
            if data is not None:
                z.writestr(info.filename, data)


def damage(mode, path):
    strings = "xl/sharedStrings.xml"
    if mode == "malformed-strings":
        rezip(path, lambda n, d: d.replace(b"</si>", b"</sj>", 1) if n == strings else d)
    elif mode == "missing-strings":
        def drop(n, d):
            if n == strings:
                return None
            if n == "[Content_Types].xml" or n.endswith(".rels"):
                return d.replace(b"sharedStrings", b"sharedStringz")
            return d
        rezip(path, drop)
    elif mode == "bomb":
        def inflate(n, d):
            if n != strings:
                return d
            head, tail = d.rsplit(b"</sst>", 1)
            return head + b" " * (200 << 20) + b"</sst>" + tail
        rezip(path, inflate)


def note(path, sheet, cell, text):
    wb = openpyxl.load_workbook(path)
    wb[sheet][cell] = text
    wb.save(path)


if __name__ == "__main__":
    command = sys.argv[1]
    if command.startswith("damage-"):
        damage(command[len("damage-"):], sys.argv[2])
    elif command == "note":
        note(*sys.argv[2:6])
    elif command == "shape":
        import workbook_shapes
        workbook_shapes.main(sys.argv[2], sys.argv[3])
    else:
        {"dump": dump, "fixture": fixture,
         "fixture-chartsheet": lambda p: fixture(p, chart_sheet=True),
         "fixture-prefixed": fixture_prefixed,
         "fixture-local-names": fixture_local_names}[command](sys.argv[2])
