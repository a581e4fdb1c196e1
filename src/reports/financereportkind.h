#pragma once

namespace quorvale {

// The four finance reports. They share one query procedure shape, one row
// filling and one validation; this value selects what differs.
enum class FinanceReportKind { PropertyArrears, ParkingArrears, ParkingAdvance, PropertyAdvance };

// The fee category whose current items a report covers.
enum class FeeCategory { Property, Parking };

} // namespace quorvale
