#include "runtime/runtimeerror.h"
#include "runtime/vb.h"

#include <gtest/gtest.h>

using namespace quorvale;

TEST(Vb, ValReadsTheLeadingNumberOnly)
{
    const struct {
        const char16_t *text;
        double value;
    } cases[] = {
        {u"1203", 1203}, {u"0502", 502}, {u"B203", 0},     {u"12A", 12},  {u" 1 2 ", 12},
        {u"-3.5x", -3.5}, {u"", 0},      {u"1e3", 1000},   {u"2e", 2},    {u"1.2.3", 1.2},
        {u"123456", 123456},
    };
    for (const auto &c : cases)
        EXPECT_DOUBLE_EQ(vbrt::Val(QString::fromUtf16(c.text)), c.value) << QString::fromUtf16(c.text).toStdString();
}

TEST(Vb, CIntRoundsHalfToEvenAndOverflowsAt16Bits)
{
    EXPECT_EQ(vbrt::CInt(2.5), 2);
    EXPECT_EQ(vbrt::CInt(3.5), 4);
    EXPECT_EQ(vbrt::CInt(32767), 32767);
    EXPECT_EQ(vbrt::CInt(-32768), -32768);
    try {
        vbrt::CInt(32768);
        FAIL() << "no overflow";
    } catch (const RuntimeError &e) {
        EXPECT_EQ(e.number(), 6);
    }
}

TEST(Vb, IsDateAcceptsTypedFormsAndRejectsImpossibleDays)
{
    const struct {
        const char16_t *text;
        bool valid;
    } cases[] = {
        {u"2024-03-31", true}, {u"2024/3/5", true},   {u"2024-02-29", true},  {u"2023-02-29", false},
        {u"2024-13-01", false}, {u"2024-00-01", false}, {u"2024年3月5日", true}, {u"20240331", false},
        {u"abc", false},       {u"2024-03-31 10:20:30", true}, {u"", false},
    };
    for (const auto &c : cases)
        EXPECT_EQ(vbrt::IsDate(QString::fromUtf16(c.text)), c.valid) << QString::fromUtf16(c.text).toStdString();
}

TEST(Vb, StrWritesShortestDecimal)
{
    EXPECT_EQ(vbrt::Str(10), QStringLiteral("10"));
    EXPECT_EQ(vbrt::Str(85.5), QStringLiteral("85.5"));
    EXPECT_EQ(vbrt::Str(1234567890123.0), QStringLiteral("1234567890123"));
}
