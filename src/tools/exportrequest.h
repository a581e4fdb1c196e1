#pragma once

#include <QDate>
#include <QString>
#include <optional>

namespace quorvale {

// One batch export as the command line states it. Months and the cut-off
// text stay as typed: the report's own checks judge them, as in the window.
struct ExportRequest {
    QString report;
    QString office;
    QString user;
    QString password;
    QString post; // empty: the user's only post

    std::optional<QString> month;                        // --month
    std::optional<std::pair<QString, QString>> months;   // --months A:B
    std::optional<QString> cutoff;                       // --cutoff
    std::optional<std::pair<QString, QString>> receipts; // --receipts A:B

    QString xlsx;
    QString sheet; // empty: the report's template name
    QString pdf;   // empty: no print
};

// Reads the export command's options; a wrong command line throws UsageError.
ExportRequest parseExportRequest(const QStringList &arguments);

// A date given on the command line for a date picker (yyyy-MM-dd and the
// other forms users type); throws UsageError naming the option otherwise.
QDate pickerDateArgument(const QString &option, const QString &text);

} // namespace quorvale
