#pragma once

#include "db/connection.h"
#include "reports/reportdefinition.h"

#include <QString>
#include <QStringList>

namespace quorvale {

class Field;
class FlexGrid;
class GridFill;
class Recordset;
struct ReportParams;

// The two customer master-data reports: every room (property) or parking
// space of one office, laid out in the columns of the import sheets.

// Property customers (frm收款日报表).
ReportDefinition propertyCustomerDefinition();
QString propertyCustomerStatement(const QString &officeCode);
void fillPropertyCustomerRow(const Recordset &record, QStringList &row);
void computePropertyCustomers(const ConnectionPtr &connection, const ReportParams &params,
                              FlexGrid &grid, GridFill &fill);
// Floor number of a room number text: the number without its last two
// digits, "1" for short or non-numeric rooms. Rooms whose number exceeds a
// 16-bit integer raise the overflow error.
QString floorOfRoom(const Field &room);

// Parking customers (frm车位基础表).
ReportDefinition parkingCustomerDefinition();
QString parkingCustomerStatement(const QString &officeCode);
void fillParkingCustomerRow(const Recordset &record, QStringList &row);
void computeParkingCustomers(const ConnectionPtr &connection, const ReportParams &params,
                             FlexGrid &grid, GridFill &fill);

} // namespace quorvale
