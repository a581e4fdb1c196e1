#pragma once

namespace quorvale {

// What a result column holds, so that values become cell text by one rule on
// both engines.
enum class FieldKind { Text, Number, DateTime, Bit };

} // namespace quorvale
