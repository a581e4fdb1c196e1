#pragma once

namespace quorvale {

// Style numbers and answers of the classic message box. Logic that decides
// what a window says carries the style with the text; the window shows it.
namespace vb {
inline constexpr int OKOnly = 0;
inline constexpr int YesNo = 4;
inline constexpr int Critical = 16;
inline constexpr int Question = 32;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;

inline constexpr int OK = 1;
inline constexpr int Cancel = 2;
inline constexpr int Yes = 6;
inline constexpr int No = 7;
} // namespace vb

} // namespace quorvale
