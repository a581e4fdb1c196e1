#pragma once

#include "batch/exportrequest.h"

#include <QDate>
#include <QString>
#include <QStringList>

namespace quorvale {

// Reads the export command's options; a wrong command line throws UsageError.
ExportRequest parseExportRequest(const QStringList &arguments,
                                 const QDate &today = QDate::currentDate());

// The usage line of the export command.
QString exportSynopsis();

} // namespace quorvale
