#pragma once

// The cell texts a customer report grid holds, shared by the workbook
// benchmarks so that every writer gets exactly the same cells.

#include <QString>

namespace quorvale::bench {

const char *const Offices[] = {"GL01", "GL02", "GL03", "SY11"};
const char *const Names[] = {"滨江花园管理处", "锦绣苑管理处", "海天大厦管理处", "翠湖山庄管理处"};
const char *const Kinds[] = {"住宅", "商铺", "车位", "写字楼", "公寓"};

// The cell texts a customer report grid holds: codes and names that repeat,
// owners and phone numbers that do not, areas, amounts and dates. Beyond the
// sixteenth column the wide layout is mostly empty.
inline QString cellText(int row, int col)
{
    if (row == 1)
        return QStringLiteral("列%1").arg(col);
    const int n = row * 7 + col;
    if (col > 16)
        return col % 9 == 0 ? QString::fromUtf8(Kinds[n % 5]) : QString();
    switch (col) {
    case 1: return QString::fromLatin1(Offices[row % 4]);
    case 2: return QString::fromUtf8(Names[row % 4]);
    case 3: return QStringLiteral("%1栋").arg(row % 40 + 1);
    case 4: return QString::number(100 + row % 3000);
    case 5: return QStringLiteral("业主%1").arg(row);
    case 6: return QStringLiteral("'0755%1").arg(1000000 + row % 9000000);
    case 7: return QString::number((row % 2000) / 10.0 + 40.5);
    case 8: return QStringLiteral("2024-%1-%2").arg(row % 12 + 1, 2, 10, QChar(u'0')).arg(row % 28 + 1, 2, 10, QChar(u'0'));
    case 9: return QString::number((row * 37 % 100000) / 100.0);
    case 10: return QString::fromUtf8(Kinds[row % 5]);
    case 11: return row % 3 ? QString() : QStringLiteral("备注%1").arg(row % 50);
    case 12: return QString::number(row % 12 + 1);
    default: return QString::number((n * 13 % 10000) / 10.0);
    }
}

} // namespace quorvale::bench
