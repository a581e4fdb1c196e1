// Values brought into the embedded engine from outside (a server's driver, a
// CSV file) and scripts split into batches as SQL Server's tools split them.
#include "tsql/tsqlbatches.h"
#include "tsql/tsqlerror.h"
#include "tsql/tsqlvalue.h"

#include <QDateTime>
#include <QLocale>
#include <gtest/gtest.h>

using namespace quorvale;

namespace {

QString shown(const QVariant &v)
{
    if (v.isNull())
        return QStringLiteral("NULL");
    if (v.typeId() == QMetaType::Double)
        return QStringLiteral("double ") +
               QString::number(v.toDouble(), 'f', QLocale::FloatingPointShortest);
    return QString::fromLatin1(v.typeName()) + QLatin1Char(' ') + v.toString();
}

QString stored(const char *type, const QVariant &value)
{
    try {
        return shown(tsqlStoredFromValue(TsqlType::parse(QString::fromLatin1(type)), value));
    } catch (const TsqlError &e) {
        return QStringLiteral("refused: ") + e.text();
    }
}

TEST(TsqlValues, ServerValuesKeepTheirMeaning)
{
    const struct {
        const char *type;
        QVariant value;
        const char *expected;
    } cases[] = {
        // Exact decimal text becomes the number whose shortest form it is.
        {"money", "85.5000", "double 85.5"},
        {"money", "0.1000", "double 0.1"},
        {"money", "-922337203.6854", "double -922337203.6854"},
        {"decimal(18, 2)", "99999999999.99", "double 99999999999.99"},
        {"money", "120.0000", "qlonglong 120"},
        {"money", "-0.0000", "qlonglong 0"},
        {"money", "1234567890123.4567",
         "refused: '1234567890123.4567' has more significant digits than the embedded database "
         "keeps exactly (15)"},
        {"decimal(18, 2)", "1.005",
         "refused: '1.005' has more than 2 decimal places for "
         "decimal(18, 2)"},
        {"money", 85.25, "double 85.25"},
        {"money", QVariant(QMetaType::fromType<QString>()), "NULL"},
        // Datetimes keep whole seconds.
        {"datetime", QDateTime(QDate(2024, 3, 31), QTime(10, 11, 12, 987)),
         "QString 2024-03-31 10:11:12"},
        {"datetime", QDate(2024, 2, 29), "QString 2024-02-29 00:00:00"},
        {"datetime", "2024-03-31 10:11:12.567", "QString 2024-03-31 10:11:12"},
        // Bits as a driver may hand them over.
        {"bit", true, "int 1"},
        {"bit", "0", "int 0"},
        {"bit", "t", "int 1"},
        {"bit", qlonglong(1), "int 1"},
        {"bit", "yes", "refused: 'yes' is not a bit (0 or 1)"},
        // Text exactly as stored, blanks included, whatever the declared length.
        {"char(6)", "2024  ", "QString 2024  "},
        {"nvarchar(2)", " 东城管理处 ", "QString  东城管理处 "},
        {"int", qlonglong(7), "qlonglong 7"},
        {"int", "x7", "refused: 'x7' is not a whole number"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(stored(c.type, c.value), QString::fromUtf8(c.expected))
            << c.type << " " << c.value.toString().toStdString();
}

TEST(TsqlValues, TypeNamesAsTheSchemaDeclaresThem)
{
    const TsqlType money = TsqlType::parse("money");
    EXPECT_EQ(money.family, TsqlType::Family::Decimal);
    EXPECT_EQ(money.scale, 4);
    const TsqlType fixed = TsqlType::parse("nchar ( 3 )");
    EXPECT_TRUE(fixed.fixed);
    EXPECT_EQ(fixed.length, 3);
    EXPECT_EQ(TsqlType::parse("varchar(max)").length, 0);
    EXPECT_EQ(TsqlType::parse("smalldatetime").family, TsqlType::Family::DateTime);
    EXPECT_EQ(TsqlType::parse("geography").family, TsqlType::Family::Other);
    EXPECT_EQ(shown(tsqlStoredFromText(fixed, "ab")), "QString ab ");
}

TEST(TsqlBatches, SplitAtGoLinesWithTheirLines)
{
    const QString script = "SELECT 1\n"    // 1
                           "go\n"          // 2
                           "  GO  \r\n"    // 3
                           "\n"            // 4
                           "SELECT GOAL\n" // 5
                           "FROM t\n"      // 6
                           "GO\n"          // 7
                           "-- note\n";    // 8
    const QList<TsqlBatch> batches = tsqlBatches(script);
    ASSERT_EQ(batches.size(), 3);
    EXPECT_EQ(batches[0].text, "SELECT 1\n");
    EXPECT_EQ(batches[1].number, 2);
    EXPECT_EQ(batches[1].text, "\nSELECT GOAL\nFROM t\n");
    EXPECT_EQ(batches[1].lineOf(0), 5);
    EXPECT_EQ(batches[1].lineOf(int(batches[1].text.indexOf("FROM")) + 1), 6);
    EXPECT_EQ(batches[2].firstLine, 8);
}

} // namespace
