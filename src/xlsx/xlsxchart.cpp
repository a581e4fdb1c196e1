#include "xlsx/xlsxchart.h"

#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxrelationships.h"
#include "xlsx/xlsxxmltext.h"

#include <iterator>

namespace quorvale::xlsx {

namespace {

// DrawingML's namespaces in each vocabulary.
struct DrawingNames {
    const char *chart, *main, *spreadsheet;
};
const DrawingNames TransitionalDrawing{"http://schemas.openxmlformats.org/drawingml/2006/chart",
                                       "http://schemas.openxmlformats.org/drawingml/2006/main",
                                       "http://schemas.openxmlformats.org/drawingml/2006/"
                                       "spreadsheetDrawing"};
const DrawingNames StrictDrawing{"http://purl.oclc.org/ooxml/drawingml/chart",
                                 "http://purl.oclc.org/ooxml/drawingml/main",
                                 "http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing"};

const DrawingNames &namesOf(const Vocabulary &vocabulary)
{
    return vocabulary.strict ? StrictDrawing : TransitionalDrawing;
}

// Office's first colours, so that every reader draws the same bars.
const char *const SeriesColours[] = {"4472C4", "ED7D31", "A5A5A5", "FFC000", "5B9BD5", "70AD47"};

QByteArray absoluteRef(const QString &sheet, const CellRange &range)
{
    const auto cell = [](int row, int col) {
        return '$' + XmlText::columnName(col) + '$' + QByteArray::number(row);
    };
    QString quoted = sheet;
    quoted.replace(u'\'', QStringLiteral("''"));
    QByteArray ref = '\'' + XmlText::escape(quoted) + "'!" + cell(range.row1, range.col1);
    if (range.row1 != range.row2 || range.col1 != range.col2)
        ref += ':' + cell(range.row2, range.col2);
    return ref;
}

QByteArray val(QByteArrayView element, QByteArrayView value)
{
    return "<c:" + element.toByteArray() + " val=\"" + value.toByteArray() + "\"/>";
}

QByteArray stringReference(const QString &sheet, const CellRange &cells, const QStringList &texts)
{
    QByteArray xml = "<c:strRef><c:f>" + absoluteRef(sheet, cells) + "</c:f><c:strCache>" +
                     val("ptCount", QByteArray::number(texts.size()));
    for (qsizetype i = 0; i < texts.size(); ++i)
        xml += "<c:pt idx=\"" + QByteArray::number(i) + "\"><c:v>" + XmlText::escape(texts[i]) +
               "</c:v></c:pt>";
    return xml + "</c:strCache></c:strRef>";
}

QByteArray numberReference(const QString &sheet, const CellRange &cells,
                           const QList<double> &values)
{
    QByteArray xml = "<c:numRef><c:f>" + absoluteRef(sheet, cells) +
                     "</c:f><c:numCache><c:formatCode>General</c:formatCode>" +
                     val("ptCount", QByteArray::number(values.size()));
    for (qsizetype i = 0; i < values.size(); ++i)
        xml += "<c:pt idx=\"" + QByteArray::number(i) + "\"><c:v>" +
               QByteArray::number(values[i], 'g', 15) + "</c:v></c:pt>";
    return xml + "</c:numCache></c:numRef>";
}

QByteArray richText(const QString &text)
{
    return "<c:tx><c:rich><a:bodyPr/><a:p><a:r><a:t>" + XmlText::escape(text) +
           "</a:t></a:r></a:p></c:rich></c:tx>";
}

// The first name of the pattern ("…drawing%1.xml") that no part has yet.
QString unusedPart(const Package &package, const QString &pattern)
{
    for (int n = 1;; ++n)
        if (const QString name = pattern.arg(n); !package.contains(name))
            return name;
}

QByteArray relationshipsXml(const QList<std::pair<QByteArray, QString>> &targets,
                            const QByteArray &type)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                     "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/"
                     "relationships\">";
    for (const auto &[id, target] : targets)
        xml += "<Relationship Id=\"" + id + "\" Type=\"" + type + "\" Target=\"" +
               XmlText::escape(target) + "\"/>";
    return xml + "</Relationships>";
}

void addOverride(QByteArray &contentTypes, const QString &part, const char *type)
{
    const qsizetype at = contentTypes.lastIndexOf("</");
    contentTypes.insert(at < 0 ? contentTypes.size() : at, "<Override PartName=\"/" +
                                                               XmlText::escape(part) +
                                                               "\" ContentType=\"" + type + "\"/>");
}

} // namespace

QByteArray putSheetCharts(Package &package, QByteArray &contentTypes, const QString &sheetPart,
                          const QString &sheetName, const std::vector<Chart> &charts,
                          const Vocabulary &vocabulary)
{
    // Parts sit beside the worksheets' folder: xl/drawings, xl/charts.
    const QString folder = sheetPart.left(sheetPart.lastIndexOf(u'/'));
    const QString base = folder.left(folder.lastIndexOf(u'/') + 1);
    const QString drawing = unusedPart(package, base + QStringLiteral("drawings/drawing%1.xml"));
    QList<std::pair<QByteArray, QString>> chartTargets;
    for (size_t i = 0; i < charts.size(); ++i) {
        const QString chart = unusedPart(package, base + QStringLiteral("charts/chart%1.xml"));
        package.put(chart, chartPartXml(charts[i], sheetName, vocabulary));
        addOverride(contentTypes, chart,
                    "application/vnd.openxmlformats-officedocument.drawingml.chart+xml");
        chartTargets.append(
            {"rId" + QByteArray::number(qulonglong(i + 1)),
             QStringLiteral("../charts/") + chart.mid(chart.lastIndexOf(u'/') + 1)});
    }
    package.put(drawing, drawingPartXml(charts, vocabulary));
    addOverride(contentTypes, drawing, "application/vnd.openxmlformats-officedocument.drawing+xml");
    package.put(relationshipsPartOf(drawing),
                relationshipsXml(chartTargets, vocabulary.relationshipType("chart")));
    package.put(relationshipsPartOf(sheetPart),
                relationshipsXml({{"rId1", QStringLiteral("../drawings/") +
                                               drawing.mid(drawing.lastIndexOf(u'/') + 1)}},
                                 vocabulary.relationshipType("drawing")));
    return "rId1";
}

QByteArray chartPartXml(const Chart &chart, const QString &sheetName, const Vocabulary &vocabulary)
{
    const DrawingNames &ns = namesOf(vocabulary);
    const bool horizontal = chart.kind == Chart::Kind::Bar;
    const bool stacked = chart.kind == Chart::Kind::StackedColumn;
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                     "<c:chartSpace xmlns:c=\"" +
                     QByteArray(ns.chart) + "\" xmlns:a=\"" + ns.main + "\" xmlns:r=\"" +
                     vocabulary.relationships + "\">" + val("roundedCorners", "0") + "<c:chart>";
    if (!chart.title.isEmpty())
        xml += "<c:title>" + richText(chart.title) + val("overlay", "0") + "</c:title>";
    xml += val("autoTitleDeleted", chart.title.isEmpty() ? "1" : "0");
    xml += "<c:plotArea><c:layout/><c:barChart>" + val("barDir", horizontal ? "bar" : "col") +
           val("grouping", stacked ? "stacked" : "clustered") + val("varyColors", "0");
    for (size_t i = 0; i < chart.series.size(); ++i) {
        const ChartSeries &s = chart.series[i];
        xml += "<c:ser>" + val("idx", QByteArray::number(qulonglong(i))) +
               val("order", QByteArray::number(qulonglong(i))) + "<c:tx>" +
               stringReference(sheetName, s.nameCell, {s.name}) + "</c:tx><c:spPr><a:solidFill>" +
               "<a:srgbClr val=\"" + SeriesColours[i % std::size(SeriesColours)] +
               "\"/></a:solidFill></c:spPr>" + val("invertIfNegative", "0") + "<c:cat>" +
               stringReference(sheetName, s.categoryCells, s.categories) + "</c:cat><c:val>" +
               numberReference(sheetName, s.valueCells, s.values) + "</c:val></c:ser>";
    }
    xml += val("gapWidth", "80");
    if (stacked)
        xml += val("overlap", "100");
    xml += val("axId", "500001") + val("axId", "500002") + "</c:barChart>";
    // The categories run down a bar chart and along a column chart.
    xml += "<c:catAx>" + val("axId", "500001") + "<c:scaling><c:orientation val=\"" +
           (horizontal ? "maxMin" : "minMax") + "\"/></c:scaling>" + val("delete", "0") +
           val("axPos", horizontal ? "l" : "b") +
           "<c:numFmt formatCode=\"General\" sourceLinked=\"0\"/>" + val("tickLblPos", "nextTo") +
           val("crossAx", "500002") + val("crosses", "autoZero") + val("auto", "1") +
           val("lblAlgn", "ctr") + val("lblOffset", "100") + "</c:catAx>";
    xml += "<c:valAx>" + val("axId", "500002") +
           "<c:scaling><c:orientation val=\"minMax\"/></c:scaling>" + val("delete", "0") +
           val("axPos", horizontal ? "t" : "l") + "<c:majorGridlines/>" +
           "<c:numFmt formatCode=\"#,##0\" sourceLinked=\"0\"/>" + val("tickLblPos", "nextTo") +
           val("crossAx", "500001") + val("crosses", horizontal ? "max" : "autoZero") +
           val("crossBetween", "between") + "</c:valAx></c:plotArea>";
    if (chart.series.size() > 1)
        xml += "<c:legend>" + val("legendPos", "b") + val("overlay", "0") + "</c:legend>";
    xml += val("plotVisOnly", "1") + val("dispBlanksAs", "gap") + "</c:chart></c:chartSpace>";
    return xml;
}

QByteArray drawingPartXml(const std::vector<Chart> &charts, const Vocabulary &vocabulary)
{
    const DrawingNames &ns = namesOf(vocabulary);
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                     "<xdr:wsDr xmlns:xdr=\"" +
                     QByteArray(ns.spreadsheet) + "\" xmlns:a=\"" + ns.main + "\">";
    const auto marker = [](const char *name, int row, int col) {
        return QByteArray("<xdr:") + name + "><xdr:col>" + QByteArray::number(col) +
               "</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>" + QByteArray::number(row) +
               "</xdr:row><xdr:rowOff>0</xdr:rowOff></xdr:" + name + ">";
    };
    for (size_t i = 0; i < charts.size(); ++i) {
        const CellRange &area = charts[i].area;
        const QByteArray number = QByteArray::number(qulonglong(i + 1));
        // Anchors count rows and columns from 0; the area ends after its last cell.
        xml += "<xdr:twoCellAnchor>" + marker("from", area.row1 - 1, area.col1 - 1) +
               marker("to", area.row2, area.col2) +
               "<xdr:graphicFrame macro=\"\"><xdr:nvGraphicFramePr><xdr:cNvPr id=\"" +
               QByteArray::number(qulonglong(i + 2)) + "\" name=\"Chart " + number +
               "\"/><xdr:cNvGraphicFramePr/></xdr:nvGraphicFramePr><xdr:xfrm><a:off x=\"0\" "
               "y=\"0\"/><a:ext cx=\"0\" cy=\"0\"/></xdr:xfrm><a:graphic><a:graphicData uri=\"" +
               ns.chart + "\"><c:chart xmlns:c=\"" + ns.chart + "\" xmlns:r=\"" +
               vocabulary.relationships + "\" r:id=\"rId" + number +
               "\"/></a:graphicData></a:graphic></xdr:graphicFrame><xdr:clientData/>"
               "</xdr:twoCellAnchor>";
    }
    return xml + "</xdr:wsDr>";
}

} // namespace quorvale::xlsx
