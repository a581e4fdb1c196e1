#include "runtime/registry.h"

#include <gtest/gtest.h>

using namespace quorvale;

TEST(RegistryValue, ConversionByType)
{
    struct Case {
        unsigned type;
        QByteArray data;
        QString expected;
    };
    const Case cases[] = {
        {RegistryType::String, QByteArray("C:\\msinfo32.exe\0", 16), "C:\\msinfo32.exe"},
        {RegistryType::String, QByteArray("abc"), "abc"},
        {RegistryType::Dword, QByteArray("\x10\x27\x00\x00", 4), "10000"},
        // Bytes below 16 give one digit each: 0,1,5 -> &h015.
        {RegistryType::Dword, QByteArray("\x05\x01\x00\x00", 4), "21"},
        {RegistryType::Dword, QByteArray("\x78\x56\x34\x12", 4), "305419896"},
        {RegistryType::Dword, QByteArray("\xff\xff\xff\xff", 4), "-1"},
        {3, QByteArray("\x01\x02", 2), "unchanged"},
        {2, QByteArray("%SystemRoot%\0", 13), "unchanged"},
    };
    for (const Case &c : cases) {
        QString value = "unchanged";
        convertRegistryValue(c.type, c.data, value);
        EXPECT_EQ(value, c.expected) << c.type << " " << c.data.toHex().constData();
    }
}
