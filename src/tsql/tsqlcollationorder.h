#pragma once

#include <QString>
#include <QStringView>

namespace quorvale {

// The order of the collation's characters: every character of the ranges
// the engine ranks, in ascending order; a character right after
// kSameWeight shares the weight of the one before it (case and width
// variants). The order is the Chinese collator's (ICU, pinyin for Han) at
// secondary strength, committed as data so that the embedded engine sorts
// alike on every platform and with every ICU.
inline constexpr QChar kSameWeight = u'\u0001';
QStringView collationOrder();

// The same order as this machine's collator gives it; the build's
// make-collation-order writes it out as the committed table.
QString collationOrderFromCollator();

} // namespace quorvale
