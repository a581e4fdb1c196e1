#pragma once

#include "output/exportoptions.h"
#include "runtime/writerlock.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>
#include <chrono>
#include <memory>

namespace quorvale {

class ReportTable;
struct OfficeOverview;
class OutputSet;
namespace xlsx {
class Workbook;
}

// A workbook that exports write into. It is locked against every other
// Quorvale writer from before it is read until the new file is in place,
// refused while Excel has it open, and read afresh under the lock, so two
// exports into one workbook both keep their sheets. Nothing reaches the
// file before stage() and the OutputSet's commit. An existing NAME.xls is
// converted (LegacyConversion) and written as NAME.xlsx beside it. Errors
// are RuntimeError.
class WorkbookTarget {
  public:
    static constexpr std::chrono::seconds DefaultLockTimeout{120};

    explicit WorkbookTarget(QString path, const WriterLock::Waiting &waiting = {},
                            std::chrono::milliseconds lockTimeout = DefaultLockTimeout);
    ~WorkbookTarget();
    WorkbookTarget(const WorkbookTarget &) = delete;
    WorkbookTarget &operator=(const WorkbookTarget &) = delete;

    // The file written: NAME.xlsx when the path named an old NAME.xls.
    const QString &path() const { return m_path; }
    // What the user is told besides: the conversion of an old .xls; or empty.
    const QString &note() const { return m_note; }

    // Writes the chosen columns of the table into the named sheet with the
    // export window's rules (see writeTableToWorkbook).
    void writeTable(const ReportTable &table, const QVector<int> &chosenColumns,
                    ExportVariant variant, const QString &sheet);
    // Writes an office's month-end overview into its sheet, first in the workbook.
    void writeOverview(const OfficeOverview &overview, const QString &sheet);
    // Writes the company's overview of the offices' ones into 月末概览.
    void writeCompanyOverview(const QList<OfficeOverview> &offices, const QStringList &heading);
    // Writes the whole workbook into a new output of the set.
    void stage(OutputSet &outputs);
    // What was written differently from what was asked, so far (a text cut
    // to Excel's cell limit), one sentence each.
    QStringList warnings() const;

  private:
    QString m_path;
    QString m_note;
    std::unique_ptr<WriterLock> m_lock;
    std::unique_ptr<xlsx::Workbook> m_book;
    bool m_created = false; // a new workbook, not one read from the file
};

// The lock file a spreadsheet program keeps beside a workbook it has open:
// Excel's owner file "~$NAME" or LibreOffice's ".~lock.NAME#".
struct OpenElsewhere {
    QString program; // empty when the workbook is not open
    QString lockFile;
};
OpenElsewhere workbookOpenElsewhere(const QString &workbook);

} // namespace quorvale
