#pragma once

namespace quorvale {

// The windows' and the printer's unit: a twentieth of a point, 1440 per inch.
inline constexpr double TwipsPerInch = 1440.0;

inline double twipsToDots(double twips, double dotsPerInch)
{
    return twips * dotsPerInch / TwipsPerInch;
}

inline double dotsToTwips(double dots, double dotsPerInch)
{
    return dots * TwipsPerInch / dotsPerInch;
}

} // namespace quorvale
