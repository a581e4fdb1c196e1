#include "output/workbooktarget.h"

#include "output/gridexport.h"
#include "output/legacyconversion.h"
#include "output/overviewsheet.h"
#include "runtime/outputset.h"
#include "runtime/runtimeerror.h"
#include "xlsx/xlsxworkbook.h"
#include "xlsx/xlsxworksheet.h"

#include <QDir>
#include <QFileInfo>

namespace quorvale {

namespace {

// The workbook layer's failures reach the windows as the program's errors.
template <class Code>
decltype(auto) asRuntimeError(Code &&code)
{
    try {
        return code();
    } catch (const xlsx::Error &e) {
        throw RuntimeError(e.number(), e.description());
    }
}

} // namespace

OpenElsewhere workbookOpenElsewhere(const QString &workbook)
{
    const QFileInfo info(workbook);
    const QString name = info.fileName();
    // Excel names it "~$" + the file name, dropping the first two characters
    // of longer names; LibreOffice ".~lock." + the name + "#". Saving over a
    // workbook open in either loses our sheet at the program's next save.
    const std::pair<QString, QString> locks[] = {
        {QStringLiteral("Excel"), QStringLiteral("~$") + name},
        {QStringLiteral("Excel"), QStringLiteral("~$") + name.mid(2)},
        {QStringLiteral("LibreOffice"), QStringLiteral(".~lock.") + name + u'#'}};
    for (const auto &[program, lock] : locks) {
        const QString path = info.absoluteDir().filePath(lock);
        if (name.size() > 2 && QFileInfo(path).isFile())
            return {program, path};
    }
    return {};
}

WorkbookTarget::WorkbookTarget(QString path, const WriterLock::Waiting &waiting,
                               std::chrono::milliseconds lockTimeout)
    : m_path(std::move(path))
{
    // An old NAME.xls is read through a converted copy and saved as NAME.xlsx.
    QString legacy;
    if (LegacyConversion::applies(m_path)) {
        legacy = m_path;
        m_path = LegacyConversion::convertedName(legacy);
    }
    const QString shown = QDir::toNativeSeparators(m_path);
    const QFileInfo folder(QFileInfo(m_path).absolutePath());
    if (!folder.isDir())
        throw RuntimeError(ErrorNumber::PathFileAccessError,
                           QStringLiteral("无法保存“%1”：文件夹“%2”不存在")
                               .arg(shown, QDir::toNativeSeparators(folder.absoluteFilePath())));
    checkWorkbookName(m_path);
    const OpenElsewhere open = workbookOpenElsewhere(m_path);
    if (!open.program.isEmpty())
        throw RuntimeError(ErrorNumber::PermissionDenied,
                           QStringLiteral("无法保存“%1”：该工作簿正在 %2 中打开（%3），请先在 "
                                          "%2 中关闭它")
                               .arg(shown, open.program, QFileInfo(open.lockFile).fileName()));
    m_lock = std::make_unique<WriterLock>(m_path, lockTimeout, waiting);
    // Read under the lock: what another writer saved while we waited is kept.
    if (!legacy.isEmpty()) {
        const LegacyConversion conversion(legacy);
        m_book = asRuntimeError(
            [&] { return xlsx::Workbook::openCopy(conversion.converted(), m_path); });
        m_note = conversion.note();
        return;
    }
    m_created = !QFileInfo::exists(m_path);
    m_book = asRuntimeError(
        [&] { return m_created ? xlsx::Workbook::create(m_path) : xlsx::Workbook::open(m_path); });
}

WorkbookTarget::~WorkbookTarget() = default;

void WorkbookTarget::writeTable(const ReportTable &table, const QVector<int> &chosenColumns,
                                ExportVariant variant, const QString &sheet)
{
    asRuntimeError([&] {
        writeTableToSheet(*m_book, table, chosenColumns, variant, sheet);
        // Compressed at once: the next report's grid can then take the memory.
        m_book->finishSheet(*m_book->worksheet(sheet));
    });
}

void WorkbookTarget::writeOverview(const OfficeOverview &overview, const QString &sheet)
{
    asRuntimeError([&] { writeOverviewSheet(*m_book, officeOverviewCells(overview), sheet); });
}

void WorkbookTarget::writeCompanyOverview(const QList<OfficeOverview> &offices,
                                          const QStringList &heading)
{
    asRuntimeError([&] {
        writeOverviewSheet(*m_book, companyOverviewCells(offices, heading), overviewSheetName());
        // A workbook of its own needs no empty first sheet beside it.
        if (xlsx::Worksheet *empty = m_book->worksheet(QStringLiteral("Sheet1"));
            empty && m_created)
            m_book->removeWorksheet(*empty);
    });
}

QStringList WorkbookTarget::warnings() const
{
    return m_book->warnings();
}

void WorkbookTarget::stage(OutputSet &outputs)
{
    StagedFile &file = outputs.add(m_path);
    try {
        m_book->write(file.device());
    } catch (const xlsx::Error &e) {
        // A write that failed on the device has a better cause than the zip layer's.
        file.finish();
        throw RuntimeError(e.number(), e.description());
    }
}

} // namespace quorvale
