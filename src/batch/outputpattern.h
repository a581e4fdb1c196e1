#pragma once

#include <QString>

namespace quorvale {

// What an output name may refer to, so one command line names every file of
// a month-end run.
struct PatternValues {
    QString office;     // {office}: the office code
    QString officeName; // {office_name}
    QString report;     // {report}: the report's template name
    QString month;      // {month}: "202611" or "202601-202611"
    QString date;       // {date}: today, yyyyMMdd
};

// The name with its placeholders filled; a value's slashes and control
// characters become "_" so a value cannot reach into another folder. An
// unknown placeholder throws UsageError.
QString expandPattern(const QString &pattern, const PatternValues &values);

// Whether a name holds placeholders: the folders of a pattern are made by the
// run, a folder named plainly must exist.
bool isPattern(const QString &name);

} // namespace quorvale
