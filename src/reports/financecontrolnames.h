#pragma once

#include <QLatin1String>

// The designed names of the finance windows' own controls, shared by the
// windows and by the checks that name the control to focus.
namespace quorvale::financecontrol {

inline constexpr QLatin1String Combo3{"Combo3"};
inline constexpr QLatin1String Text1{"Text1"};
inline constexpr QLatin1String Text2{"Text2"};
inline constexpr QLatin1String Text3{"Text3"};
inline constexpr QLatin1String Text4{"Text4"};
inline constexpr QLatin1String Picture6{"Picture6"};
inline constexpr QLatin1String MonthView1{"MonthView1"};
inline constexpr QLatin1String Frame1{"Frame1"};
inline constexpr QLatin1String DTPicker1{"DTPicker1"};
inline constexpr QLatin1String DTPicker2{"DTPicker2"};
inline constexpr QLatin1String DTPicker3{"DTPicker3"};
inline constexpr QLatin1String Command2{"Command2"};
inline constexpr QLatin1String Command3{"Command3"};
inline constexpr QLatin1String Command4{"Command4"};
inline constexpr QLatin1String Command9{"Command9"};
inline constexpr QLatin1String Label2{"Label2"};
inline constexpr QLatin1String Label3{"Label3"};

} // namespace quorvale::financecontrol
