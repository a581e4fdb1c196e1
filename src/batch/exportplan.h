#pragma once

#include "batch/exportrequest.h"
#include "batch/reportlookup.h"
#include "reports/officelist.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace quorvale {

// One report for one office, with the files it goes to.
struct PlannedExport {
    ReportEntry report;
    QString officeCode;
    QString officeName;
    QString refusal; // set: refused before it runs (not offered, commercial)
    QString workbook;
    QString sheet;
    QString pdf; // empty: no print
};

// Every report-office pair of a run, ordered so that the pairs writing one
// workbook follow each other (one save per workbook), and the commercial
// offices that `--office all` left out.
// The month-end overview of one office: its sheet in the office's workbook
// and, with --pdf, its own PDF (the pattern's {report} is 月末概览).
struct PlannedOverview {
    QString officeCode;
    QString officeName;
    QString workbook;
    QString sheet; // 月末概览, with the office code when a workbook holds several
    QString pdf;
};

struct ExportPlan {
    QList<PlannedExport> pairs;
    QStringList skipped;              // and what else the run leaves out, said before it starts
    QList<PlannedOverview> overviews; // with --overview, one per office with a finance report
    QString companyOverview; // the company's overview workbook when several offices have one
};

// The offices a report's window lists for the signed-in post, in its order.
using OfficeLister = std::function<QList<OfficeItem>(const ReportEntry &)>;

// Expands the request into pairs and names their files. Two pairs that
// would write one sheet of one workbook, or one PDF, are refused with a
// UsageError listing every clash, before anything runs.
ExportPlan planExports(const ExportRequest &request, const OfficeLister &offices);

} // namespace quorvale
