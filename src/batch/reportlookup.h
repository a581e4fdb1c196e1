#pragma once

#include "reports/financereportkind.h"
#include "reports/reportdefinition.h"

#include <QString>
#include <optional>

namespace quorvale {

// A report as the batch export names it: by its window's name or by the
// main window's menu item that opens it.
struct ReportEntry {
    QString menuItem;
    ReportDefinition definition;
    std::optional<FinanceReportKind> finance;
};

// The report named by a window or menu-item name; nullopt when none is.
std::optional<ReportEntry> findReport(const QString &name);
// Every accepted name, for the usage message.
QStringList reportNames();
// The six reports by their menu items, in the main window's menu order.
QStringList menuReportNames();

} // namespace quorvale
