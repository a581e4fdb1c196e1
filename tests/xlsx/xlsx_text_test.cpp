#include "xlsx/xlsxcellinput.h"
#include "xlsx/xlsxxmltext.h"

#include <QByteArrayList>
#include <cmath>
#include <gtest/gtest.h>

using namespace quorvale::xlsx;

TEST(XlsxText, TypedInputRules)
{
    using K = CellInput::Kind;
    const struct {
        const char *input;
        K kind;
        double number;
    } cases[] = {
        {"+5", K::Number, 5},         {"1.", K::Number, 1},         {"-0", K::Number, 0},
        {"1E-2", K::Number, 0.01},    {"-", K::Text, 0},            {"+", K::Text, 0},
        {".", K::Text, 0},            {"1e400", K::Text, 0},        {"1.2.3", K::Text, 0},
        {"0x10", K::Text, 0},         {"1 2", K::Text, 0},          {" ", K::Text, 0},
        {"12:30", K::Text, 0},        {"'", K::Empty, 0},           {"2024/3/31", K::Date, 45382},
        {"2024-03-31", K::Date, 45382}, {"1900-02-28", K::Date, 59}, {"1900-03-01", K::Date, 61},
        {"2024-03-31 12:00", K::DateTime, 45382.5}, {"2024-03-31T12:00", K::Text, 0},
        {"2024-03-31 24:00", K::Text, 0}, {"2024-13-01", K::Text, 0}, {"1899-12-31", K::Text, 0},
        {"2024-3-31", K::Date, 45382},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.input);
        const CellInput in = CellInput::interpret(QString::fromUtf8(c.input));
        EXPECT_EQ(int(in.kind), int(c.kind));
        if (c.kind == K::Number || c.kind == K::Date || c.kind == K::DateTime) {
            EXPECT_DOUBLE_EQ(in.number, c.number);
        }
    }
    EXPECT_FALSE(std::signbit(CellInput::interpret(QStringLiteral("-0")).number));
}

TEST(XlsxText, AttributesAreFoundOnlyWhereTheyAre)
{
    const struct {
        const char *tag;
        const char *name;
        const char *value; // nullptr: absent
    } cases[] = {
        {"<c r=\"A1\" s=\"3\" t=\"s\">", "s", "3"},
        {"<c r=\"A1\" t=\"s\" s=\"3\">", "s", "3"},
        {"<c r=\"A1\" t=\"s\">", "s", nullptr},
        {"<x t=\" s=&quot;9&quot;\"/>", "s", nullptr},
        {"<x t=' s=\"9\"' s='4'/>", "s", "4"},
        {"<row r=\"7\" x14ac:dyDescent=\"0.25\">", "dyDescent", nullptr},
        {"<row r=\"7\" x14ac:dyDescent=\"0.25\">", "x14ac:dyDescent", "0.25"},
        {"<sheet name=\"A&amp;B\" r:id=\"rId3\"/>", "name", "A&B"},
        {"<sheet name=\"A&amp;B\" r:id=\"rId3\"/>", "id", nullptr},
        {"<c\n  r = \"B2\"/>", "r", "B2"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.tag);
        const auto value = XmlText::attribute(c.tag, c.name);
        ASSERT_EQ(value.has_value(), c.value != nullptr);
        if (c.value) {
            EXPECT_EQ(*value, QByteArray(c.value));
        }
    }
}

TEST(XlsxText, AttributesAreSetAndRemovedInPlace)
{
    const struct {
        const char *tag;
        const char *name;
        const char *value; // nullptr: remove
        const char *expected;
    } cases[] = {
        {"<c r=\"A1\" s=\"3\">", "s", "12", "<c r=\"A1\" s=\"12\">"},
        {"<c r=\"A1\"/>", "s", "2", "<c r=\"A1\" s=\"2\"/>"},
        {"<c r=\"A1\" />", "s", "2", "<c r=\"A1\" s=\"2\" />"},
        {"<xf numFmtId='0'>", "numFmtId", "14", "<xf numFmtId='14'>"},
        {"<sheet name=\"a\"/>", "name", "A&B\"", "<sheet name=\"A&amp;B&quot;\"/>"},
        {"<row r=\"1\" spans=\"1:3\" ht=\"20\">", "spans", nullptr, "<row r=\"1\" ht=\"20\">"},
        {"<xf quotePrefix=\"1\" fontId=\"0\"/>", "quotePrefix", nullptr, "<xf fontId=\"0\"/>"},
        {"<c r=\"A1\">", "t", nullptr, "<c r=\"A1\">"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.tag);
        const QByteArray out = c.value ? XmlText::setAttribute(c.tag, c.name, c.value)
                                       : XmlText::removeAttribute(c.tag, c.name);
        EXPECT_EQ(out, QByteArray(c.expected));
    }
}

TEST(XlsxText, CellReferencesAndTags)
{
    const struct {
        const char *ref;
        int row, col;
    } refs[] = {{"A1", 1, 1}, {"Z9", 9, 26}, {"AA10", 10, 27}, {"AZ1", 1, 52},
                {"XFD1048576", 1048576, 16384}};
    for (const auto &r : refs) {
        SCOPED_TRACE(r.ref);
        int row = 0, col = 0;
        ASSERT_TRUE(XmlText::parseCellRef(r.ref, row, col));
        EXPECT_EQ(row, r.row);
        EXPECT_EQ(col, r.col);
        EXPECT_EQ(XmlText::cellRef(r.row, r.col), QByteArray(r.ref));
    }
    int row = 0, col = 0;
    for (const char *bad : {"", "A", "1", "a1", "A0", "AAAA1", "A1:B2"})
        EXPECT_FALSE(XmlText::parseCellRef(bad, row, col)) << bad;

    // Comments, declarations and CDATA never yield tags, even with '<' inside.
    const QByteArray xml = "<?xml version=\"1.0\"?><!-- <row r=\"9\"> --><a x=\"1>2\">"
                           "<![CDATA[<b>]]><x:b/></a>";
    QByteArrayList seen;
    qsizetype pos = 0;
    XmlTag tag;
    while (XmlText::nextTag(xml, pos, tag))
        seen.append((tag.closing ? "/" : "") + tag.name.toByteArray() + (tag.selfClosing ? "/" : ""));
    EXPECT_EQ(seen.join(' '), QByteArray("a x:b/ /a"));
}
