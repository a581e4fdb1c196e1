#pragma once

#include <QDate>
#include <QString>

namespace quorvale {

struct DatabaseFileOptions {
    bool demo = false;
    int scale = 0; // rows per report of the benchmark office; 0 = none
    bool force = false;
    QDate today = QDate::currentDate();
};

// Creates an embedded database file with the schema (and the demo data when
// asked). It is built under a temporary name beside the target and renamed
// over it only when complete. An existing target is refused unless forced.
// Throws RuntimeError on any file or database failure.
void createDatabaseFile(const QString &path, const DatabaseFileOptions &options);

} // namespace quorvale
