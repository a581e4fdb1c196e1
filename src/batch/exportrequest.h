#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <optional>

namespace quorvale {

// One batch export run as the command line states it: one or several reports
// for one or several offices. Month and date words ("last", "month-end") are
// already resolved against `today`; the reports' own checks judge the
// results, as in the window.
struct ExportRequest {
    QStringList reports;      // menu or window names; "all" is the six in menu order
    QStringList offices;      // office codes as given
    bool allOffices = false;  // --office all: every office of the post's list
    QString user;
    QString password;
    QString post; // empty: the user's only post

    std::optional<QString> month;                        // --month
    std::optional<std::pair<QString, QString>> months;   // --months A:B
    std::optional<QString> cutoff;                       // --cutoff
    std::optional<std::pair<QString, QString>> receipts; // --receipts A:B

    // Output names; each may hold {office}, {office_name}, {report}, {month}
    // and {date}.
    QString xlsx;
    QString sheet; // empty: the report's template name
    QString pdf;   // empty: no print

    enum class Orientation { Portrait, Landscape, Auto };
    QString paper = QStringLiteral("A4"); // A4 or A3
    Orientation orientation = Orientation::Portrait;

    bool overview = false; // the month-end overview sheet in each workbook
    QString overviewFile;  // the company overview's workbook; empty: beside the offices' ones
    bool dryRun = false;
    QDate today;
    QString monthText; // {month}: the month or range as resolved, "202611" or "202601-202611"
};

} // namespace quorvale
