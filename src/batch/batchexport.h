#pragma once

#include "batch/exportplan.h"
#include "batch/exportrequest.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace quorvale {

// What became of one report for one office.
struct PairOutcome {
    enum class Status { Planned, Written, Refused, Failed };
    Status status = Status::Planned;
    QString report; // the menu item
    QString office; // code and name
    int rows = -1;  // data rows below the header, once computed
    QString workbook;
    QString sheet;
    QString pdf;
    QString message; // why it was refused or failed
};

// A whole run: the concrete period it used, what it left out, each pair.
struct BatchRun {
    QString period;     // "month 202611, cut-off 2026-11-30, today …"; empty without finance reports
    QStringList skipped; // commercial offices `--office all` left out
    QList<PairOutcome> outcomes;
    QList<PlannedOverview> overviews; // the month-end overviews planned
    QString companyOverview;          // the company overview written, or empty
    QString companyOverviewError;     // why it could not be written
};

// A report running: its place in the run, and the rows read so far. Stage
// "read" while rows arrive, "print" and "write" before the outputs.
struct PairProgress {
    int index = 0; // 1-based
    int total = 0;
    QString report;
    QString office;
    QString stage;
    int rows = 0;
};

struct BatchCallbacks {
    // Once the run is planned, before anything is computed or written.
    std::function<void(const BatchRun &)> planned;
    std::function<void(const PairProgress &)> progress;
    // Things that do not stop an export (a table wider than the paper).
    std::function<void(const QString &)> warning;
    // Said at once, whatever the outcome: waiting for another writer.
    std::function<void(const QString &)> notice;
};

// Signs in once, plans every report-office pair with its file names, and
// runs them one after the other with the windows' own code: the report's
// checks and compute, the export window's workbook rules, the print engine.
// A pair that is refused or fails does not stop the others. Each workbook
// (with the PDFs of its pairs) is written in one save and moved into place
// whole, or not at all. With `dryRun` nothing is computed or written.
// Throws UsageError (bad request or clashing outputs), RefusedError
// (sign-in) or RuntimeError (settings, connection).
BatchRun runBatchExport(const ExportRequest &request, const BatchCallbacks &callbacks = {});

} // namespace quorvale
