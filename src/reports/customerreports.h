#pragma once

#include "db/connection.h"
#include "reports/reportdefinition.h"

#include <QString>
#include <QStringList>

namespace quorvale {

class Field;
class Recordset;
class TableFill;
struct ReportParams;

// The two customer master-data reports: every room (property) or parking
// space of one office, laid out in the columns of the import sheets.

// The columns of the property import sheet the report fills.
namespace PropertyColumn {
inline constexpr int Office = 0, OfficeCode = 1, EstateName = 2, GroupName = 4, Floor = 9,
                     Room = 10, Area = 13, CustomerKind = 15, OwnerName = 16, HouseNature = 20,
                     MobilePhone = 22, MovedIn = 49, OccupiedSince = 52;
}
// The columns of the parking import sheet the report fills.
namespace ParkingColumn {
inline constexpr int Office = 0, OfficeCode = 1, EstateName = 2, CarParkCode = 3,
                     CarParkName = 4, Space = 7, CustomerKind = 9, OwnerName = 10,
                     MovedIn = 38, OccupiedSince = 42;
}

// Property customers (frm收款日报表).
ReportDefinition propertyCustomerDefinition();
QString propertyCustomerStatement(const QString &officeCode);
void fillPropertyCustomerRow(const Recordset &record, QStringList &row);
void computePropertyCustomers(const ConnectionPtr &connection, const ReportParams &params,
                              TableFill &fill);
// Floor number of a room number text: the number without its last two
// digits, "1" for short or non-numeric rooms. Rooms whose number exceeds a
// 16-bit integer raise the overflow error.
QString floorOfRoom(const Field &room);

// Parking customers (frm车位基础表).
ReportDefinition parkingCustomerDefinition();
QString parkingCustomerStatement(const QString &officeCode);
void fillParkingCustomerRow(const Recordset &record, QStringList &row);
void computeParkingCustomers(const ConnectionPtr &connection, const ReportParams &params,
                             TableFill &fill);

} // namespace quorvale
