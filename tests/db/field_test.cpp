#include "db/field.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace quorvale;

TEST(Field, TextFollowsOneRuleForBothEngines)
{
    struct Case {
        QVariant value;
        FieldKind kind;
        const char *text;
    };
    const Case cases[] = {
        // QSQLITE's NULL is a null QVariant typed QString.
        {QVariant(QMetaType(QMetaType::QString)), FieldKind::Text, ""},
        {QVariant(QMetaType(QMetaType::Double)), FieldKind::Number, ""},
        {QVariant(QString()), FieldKind::DateTime, ""},
        {QVariant(QStringLiteral("")), FieldKind::Text, ""},
        {QVariant(85.5), FieldKind::Number, "85.5"},
        {QVariant(120.0), FieldKind::Number, "120"},
        {QVariant(qlonglong(120)), FieldKind::Number, "120"},
        {QVariant(0.1 + 0.2), FieldKind::Number, "0.30000000000000004"},
        {QVariant(1e20), FieldKind::Number, "100000000000000000000"},
        {QVariant(0.000001), FieldKind::Number, "0.000001"},
        {QVariant(-0.0), FieldKind::Number, "0"},
        // Server decimals arrive as text with the scale's zeros.
        {QVariant(QStringLiteral("85.5000")), FieldKind::Number, "85.5"},
        {QVariant(QStringLiteral("120.0000")), FieldKind::Number, "120"},
        {QVariant(QStringLiteral("-0.5000")), FieldKind::Number, "-0.5"},
        {QVariant(QStringLiteral("12345678901234567.89")), FieldKind::Number,
         "12345678901234567.89"},
        {QVariant(QStringLiteral("2024-03-31 00:00:00")), FieldKind::DateTime, "2024-03-31"},
        {QVariant(QStringLiteral("2024-03-31 08:05:09")), FieldKind::DateTime,
         "2024-03-31 08:05:09"},
        {QVariant(QDateTime(QDate(2024, 3, 31), QTime(0, 0))), FieldKind::DateTime, "2024-03-31"},
        {QVariant(QDateTime(QDate(2024, 3, 31), QTime(23, 59, 1, 500))), FieldKind::DateTime,
         "2024-03-31 23:59:01"},
        {QVariant(qlonglong(1)), FieldKind::Bit, "1"},
        {QVariant(true), FieldKind::Bit, "1"},
        {QVariant(false), FieldKind::Bit, "0"},
        {QVariant(QStringLiteral("0502 ")), FieldKind::Text, "0502 "},
        {QVariant(QStringLiteral("王小明")), FieldKind::Text, "王小明"},
    };
    for (const Case &c : cases) {
        const Field f(QStringLiteral("x"), c.value, c.kind);
        EXPECT_EQ(f.text(), QString::fromUtf8(c.text)) << c.value.toString().toStdString();
    }
}

TEST(Field, BitsAndNullsAsBooleans)
{
    EXPECT_TRUE(Field(QString(), QVariant(qlonglong(1)), FieldKind::Bit).toBool());
    EXPECT_FALSE(Field(QString(), QVariant(qlonglong(0)), FieldKind::Bit).toBool());
    EXPECT_TRUE(Field(QString(), QVariant(true), FieldKind::Bit).toBool());
    EXPECT_FALSE(
        Field(QString(), QVariant(QMetaType(QMetaType::QString)), FieldKind::Bit).toBool());
    EXPECT_TRUE(Field(QString(), QVariant(QStringLiteral("1")), FieldKind::Bit).toBool());
}
