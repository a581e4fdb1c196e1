"""Workbooks shaped as other programs write them, for the real-workbook tests.

  workbook_shapes.py SHAPE PATH   writes the workbook of that shape (one sheet
                                  "Sheet1" with a note in A1 unless said otherwise)

Shapes: plain, shared-strings, date1904, libreoffice-formats, strict, merges, hyperlinks, table,
shared-formula, array-formula, pivot, bad-crc, case-twins, prefixed, empty-styles,
protected-locked, protected-unlocked, structure-locked.
"""
import sys
import zipfile

MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
RELS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
STRICT_MAIN = "http://purl.oclc.org/ooxml/spreadsheetml/main"
STRICT_RELS = "http://purl.oclc.org/ooxml/officeDocument/relationships"
PKG_RELS = "http://schemas.openxmlformats.org/package/2006/relationships"
CT = "application/vnd.openxmlformats-officedocument.spreadsheetml."
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'


def styles(main=MAIN, num_fmts="", first_format=0):
    return (HEAD + f'<styleSheet xmlns="{main}">{num_fmts}'
            '<fonts count="1"><font><sz val="10"/><name val="Arial"/></font></fonts>'
            '<fills count="2"><fill><patternFill patternType="none"/></fill>'
            '<fill><patternFill patternType="gray125"/></fill></fills>'
            '<borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders>'
            f'<cellStyleXfs count="1"><xf numFmtId="{first_format}" fontId="0" fillId="0" borderId="0"/></cellStyleXfs>'
            f'<cellXfs count="1"><xf numFmtId="{first_format}" fontId="0" fillId="0" borderId="0" xfId="0"/></cellXfs>'
            '<cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles></styleSheet>')


def sheet(rows, extra="", main=MAIN, rels=RELS):
    """rows: raw <row> XML; extra: elements after sheetData, in schema order."""
    return (HEAD + f'<worksheet xmlns="{main}" xmlns:r="{rels}"><sheetData>{rows}</sheetData>'
            f'{extra}</worksheet>')


PROTECTED_WITH_PASSWORD = (
    '<sheetProtection algorithmName="SHA-512" hashValue="bm90IGEgcmVhbCBoYXNo" '
    'saltValue="c2FsdA==" spinCount="100000" sheet="1" objects="1" scenarios="1"/>')
NOTE_ROW = '<row r="1"><c r="A1" t="inlineStr"><is><t>note</t></is></c></row>'


def package(main=MAIN, rels=RELS, workbook_pr="", sheet_xml=None, styles_xml=None,
            sheet_rels=None, extra_parts=None, extra_types=""):
    conformance = ' conformance="strict"' if main == STRICT_MAIN else ""
    parts = {
        "[Content_Types].xml":
            '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
            '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="xml" ContentType="application/xml"/>'
            f'<Override PartName="/xl/workbook.xml" ContentType="{CT}sheet.main+xml"/>'
            f'<Override PartName="/xl/worksheets/sheet1.xml" ContentType="{CT}worksheet+xml"/>'
            f'<Override PartName="/xl/styles.xml" ContentType="{CT}styles+xml"/>'
            f'<Override PartName="/docProps/app.xml" ContentType="application/vnd.openxmlformats-officedocument.extended-properties+xml"/>'
            f'{extra_types}</Types>',
        "_rels/.rels":
            f'<Relationships xmlns="{PKG_RELS}"><Relationship Id="rId1" Type="{rels}/officeDocument" '
            'Target="xl/workbook.xml"/><Relationship Id="rId2" Type="http://schemas.openxmlformats.org/'
            'officeDocument/2006/relationships/extended-properties" Target="docProps/app.xml"/>'
            '</Relationships>',
        "docProps/app.xml":
            '<Properties xmlns="http://schemas.openxmlformats.org/officeDocument/2006/extended-properties">'
            '<Application>Shapes</Application></Properties>',
        "xl/workbook.xml":
            HEAD + f'<workbook xmlns="{main}" xmlns:r="{rels}"{conformance}>'
            f'{workbook_pr}<sheets><sheet name="Sheet1" sheetId="1" r:id="rId1"/></sheets></workbook>',
        "xl/_rels/workbook.xml.rels":
            f'<Relationships xmlns="{PKG_RELS}">'
            f'<Relationship Id="rId1" Type="{rels}/worksheet" Target="worksheets/sheet1.xml"/>'
            f'<Relationship Id="rId2" Type="{rels}/styles" Target="styles.xml"/></Relationships>',
        "xl/styles.xml": styles_xml if styles_xml is not None else styles(main),
        "xl/worksheets/sheet1.xml": sheet_xml if sheet_xml is not None else sheet(NOTE_ROW, main=main, rels=rels),
    }
    if sheet_rels:
        parts["xl/worksheets/_rels/sheet1.xml.rels"] = (
            f'<Relationships xmlns="{PKG_RELS}">{sheet_rels}</Relationships>')
    parts.update(extra_parts or {})
    return parts


def write(path, parts, stored=()):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        for name, text in parts.items():
            z.writestr(name, text, zipfile.ZIP_STORED if name in stored else zipfile.ZIP_DEFLATED)


def table_parts():
    rows = ('<row r="1"><c r="A1" t="inlineStr"><is><t>Item</t></is></c>'
            '<c r="B1" t="inlineStr"><is><t>Type</t></is></c><c r="C1" t="inlineStr"><is><t>Qty</t></is></c>'
            '<c r="D1" t="inlineStr"><is><t>Note</t></is></c></row>'
            '<row r="2"><c r="A2" t="inlineStr"><is><t>bolt</t></is></c><c r="C2"><v>4</v></c></row>')
    table = (HEAD + f'<table xmlns="{MAIN}" id="1" name="Stock" displayName="Stock" ref="A1:D4">'
             '<autoFilter ref="A1:D4"/><tableColumns count="4"><tableColumn id="1" name="Item"/>'
             '<tableColumn id="2" name="Type"/><tableColumn id="3" name="Qty"/>'
             '<tableColumn id="4" name="Note"/></tableColumns>'
             '<tableStyleInfo name="TableStyleMedium2" showRowStripes="1"/></table>')
    return package(
        sheet_xml=sheet(rows, '<tableParts count="1"><tablePart r:id="rId1"/></tableParts>'),
        sheet_rels=f'<Relationship Id="rId1" Type="{RELS}/table" Target="../tables/table1.xml"/>',
        extra_parts={"xl/tables/table1.xml": table},
        extra_types=f'<Override PartName="/xl/tables/table1.xml" ContentType="{CT}table+xml"/>')


def pivot_parts():
    pivot = (HEAD + f'<pivotTableDefinition xmlns="{MAIN}" name="Summary" cacheId="1" '
             'dataCaption="Values"><location ref="B3:C6" firstHeaderRow="1" firstDataRow="1" '
             'firstDataCol="1"/></pivotTableDefinition>')
    return package(
        sheet_rels=f'<Relationship Id="rId1" Type="{RELS}/pivotTable" Target="../pivotTables/pivotTable1.xml"/>',
        extra_parts={"xl/pivotTables/pivotTable1.xml": pivot},
        extra_types=f'<Override PartName="/xl/pivotTables/pivotTable1.xml" ContentType="{CT}pivotTable+xml"/>')


def prefixed_parts():
    parts = package()
    parts["xl/workbook.xml"] = (
        HEAD + f'<x:workbook xmlns:x="{MAIN}"><x:sheets><x:sheet name="Sheet1" sheetId="1" '
        f'xmlns:ns="{RELS}" ns:id="rId1"/></x:sheets></x:workbook>')
    parts["xl/worksheets/sheet1.xml"] = (
        HEAD + f'<x:worksheet xmlns:x="{MAIN}"><x:sheetData><x:row r="1"><x:c r="A1" t="inlineStr">'
        '<x:is><x:t>note</x:t></x:is></x:c></x:row></x:sheetData></x:worksheet>')
    parts["xl/styles.xml"] = styles().replace(f'<styleSheet xmlns="{MAIN}">',
                                              f'<x:styleSheet xmlns:x="{MAIN}">').replace(
        "</styleSheet>", "</x:styleSheet>")
    # the prefix goes on every element of the style sheet
    import re
    body = parts["xl/styles.xml"]
    head, rest = body.split("<x:styleSheet", 1)
    rest = re.sub(r"<(/?)(?!x:)([a-zA-Z]+)", r"<\1x:\2", rest)
    parts["xl/styles.xml"] = head + "<x:styleSheet" + rest
    return parts


def shape(name):
    if name == "plain":
        return package()
    if name == "shared-strings":
        # texts in a shared-string table, as Excel keeps them
        parts = package(sheet_xml=sheet('<row r="1"><c r="A1" t="s"><v>0</v></c>'
                                        '<c r="B1" t="s"><v>1</v></c></row>'))
        parts["xl/sharedStrings.xml"] = (HEAD + f'<sst xmlns="{MAIN}" count="2" uniqueCount="2">'
                                         '<si><t>note</t></si><si><t>more</t></si></sst>')
        parts["xl/_rels/workbook.xml.rels"] = parts["xl/_rels/workbook.xml.rels"].replace(
            "</Relationships>", f'<Relationship Id="rId3" Type="{RELS}/sharedStrings" '
                                'Target="sharedStrings.xml"/></Relationships>')
        parts["[Content_Types].xml"] = parts["[Content_Types].xml"].replace(
            "</Types>", f'<Override PartName="/xl/sharedStrings.xml" ContentType="{CT}sharedStrings+xml"/></Types>')
        return parts
    if name == "date1904":
        return package(workbook_pr='<workbookPr date1904="1"/>')
    if name == "libreoffice-formats":
        # LibreOffice numbers its own formats from 164, "General" among them.
        fmts = ('<numFmts count="2"><numFmt numFmtId="164" formatCode="General"/>'
                '<numFmt numFmtId="165" formatCode="yyyy\\-mm\\-dd"/></numFmts>')
        return package(styles_xml=styles(num_fmts=fmts, first_format=164))
    if name == "strict":
        return package(main=STRICT_MAIN, rels=STRICT_RELS,
                       workbook_pr='<workbookPr dateCompatibility="0"/>')
    if name == "merges":
        # B2:C3 lies below what the sheet held, where the new rows go; H1:I2 beside it.
        rows = ('<row r="1"><c r="A1" t="inlineStr"><is><t>old title</t></is></c>'
                '<c r="H1" t="inlineStr"><is><t>mine</t></is></c></row>')
        return package(sheet_xml=sheet(rows, '<mergeCells count="2"><mergeCell ref="B2:C3"/>'
                                             '<mergeCell ref="H1:I2"/></mergeCells>'))
    if name == "hyperlinks":
        rows = ('<row r="1"><c r="A1" t="inlineStr"><is><t>note</t></is></c></row>'
                '<row r="2"><c r="A2" t="inlineStr"><is><t>old link</t></is></c></row>'
                '<row r="10"><c r="H10" t="inlineStr"><is><t>my link</t></is></c></row>')
        links = ('<hyperlinks><hyperlink ref="A2" r:id="rId1"/><hyperlink ref="H10" r:id="rId2"/>'
                 '</hyperlinks>')
        rels = (f'<Relationship Id="rId1" Type="{RELS}/hyperlink" Target="http://old.example/" TargetMode="External"/>'
                f'<Relationship Id="rId2" Type="{RELS}/hyperlink" Target="http://mine.example/" TargetMode="External"/>')
        return package(sheet_xml=sheet(rows, links), sheet_rels=rels)
    if name == "table":
        return table_parts()
    if name in ("shared-formula", "array-formula"):
        if name == "shared-formula":
            f = ('<c r="C2"><f t="shared" ref="C2:E2" si="0">A2*2</f><v>0</v></c>'
                 '<c r="D2"><f t="shared" si="0"/><v>0</v></c><c r="E2"><f t="shared" si="0"/><v>0</v></c>')
        else:
            f = '<c r="C2"><f t="array" ref="C2:D2">A2:B2*2</f><v>0</v></c><c r="D2"><v>0</v></c>'
        return package(sheet_xml=sheet(NOTE_ROW + f'<row r="2">{f}</row>'))
    if name == "pivot":
        return pivot_parts()
    if name == "prefixed":
        return prefixed_parts()
    if name == "empty-styles":
        return package(styles_xml=HEAD + f'<styleSheet xmlns="{MAIN}"/>')
    if name == "protected-locked":
        # 保护工作表 with a password, as Excel 2013 and later store it
        return package(sheet_xml=sheet(NOTE_ROW, PROTECTED_WITH_PASSWORD))
    if name == "protected-unlocked":
        # A1:C3 unlocked (设置单元格格式 → 保护), E2 locked beside them
        unlocked = "".join(
            f'<row r="{r}">' + "".join(f'<c r="{c}{r}" s="1"/>' for c in "ABC") +
            ('<c r="E2" t="inlineStr"><is><t>keep</t></is></c>' if r == 2 else "") + "</row>"
            for r in (1, 2, 3))
        unlocked = unlocked.replace('<c r="A1" s="1"/>',
                                    '<c r="A1" s="1" t="inlineStr"><is><t>note</t></is></c>')
        return package(sheet_xml=sheet(unlocked, '<sheetProtection sheet="1"/>'),
                       styles_xml=styles().replace(
                           '<cellXfs count="1">', '<cellXfs count="2">').replace(
                           '</cellXfs>', '<xf numFmtId="0" fontId="0" fillId="0" borderId="0" '
                           'xfId="0" applyProtection="1"><protection locked="0"/></xf></cellXfs>'))
    if name == "structure-locked":
        return package(workbook_pr='<workbookProtection lockStructure="1"/>')
    if name == "case-twins":
        parts = package()
        parts["xl/worksheets/Sheet1.xml"] = parts["xl/worksheets/sheet1.xml"]
        return parts
    raise SystemExit("unknown shape " + name)


def main(name, path):
    if name == "bad-crc":
        parts = package()
        write(path, parts, stored=("docProps/app.xml",))
        data = bytearray(open(path, "rb").read())
        at = data.index(b"<Application>Shapes")
        data[at + len("<Application>")] ^= 0x20  # "shapes": the stored checksum no longer fits
        open(path, "wb").write(bytes(data))
        return
    write(path, shape(name))


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
