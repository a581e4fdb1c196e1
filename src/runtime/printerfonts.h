#pragma once

namespace quorvale {

// The designed fonts "宋体" and "微软雅黑" are Windows fonts. Where they are
// not installed, map them to an installed CJK font so that screen, printer
// and PDF show (and embed) real Chinese glyphs. Safe to call repeatedly.
void ensureCjkFontSubstitutes();

} // namespace quorvale
