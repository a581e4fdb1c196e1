#pragma once

#include <QDate>
#include <QSqlDatabase>

namespace quorvale {

// Fills an empty schema with the demo data set: staff and posts, four offices,
// buildings, rooms, owners, car parks and two years of fee ledger ending in
// today's month, all dated from `today`. The same today and scale give the
// same rows. A scale above 0 adds the benchmark office "BIG" whose reports
// each yield `scale` rows. Runs in one transaction.
void loadDemoData(const QSqlDatabase &db, const QDate &today, int scale = 0);

} // namespace quorvale
