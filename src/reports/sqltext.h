#pragma once

#include "tsql/sqlliteral.h"

#include <QString>

namespace quorvale {

// The building address DZ that the property reports select first: address
// parts 1 to 4 each followed by its unit word, Null parts as empty text.
// Starts with "Select " and ends with "AS DZ,".
QString buildingAddressSelect();
// The property reports' order: each address part and the room number by
// length first, so that numbered parts sort as numbers. Starts with
// " ORDER BY"; reports append their own further keys.
QString buildingRoomOrderBy();

} // namespace quorvale
