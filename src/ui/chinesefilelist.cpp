#include "ui/chinesefilelist.h"

#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLocale>
#include <QStyle>
#include <QTreeView>

namespace quorvale {

namespace {

// QFileSystemModel's columns.
enum Column { Name, Size, Kind, Modified };

} // namespace

const QFileSystemModel *ChineseFileList::files() const
{
    return qobject_cast<const QFileSystemModel *>(sourceModel());
}

QVariant ChineseFileList::data(const QModelIndex &index, int role) const
{
    const QFileSystemModel *model = files();
    if (role != Qt::DisplayRole || !model || index.column() == Name)
        return QIdentityProxyModel::data(index, role);
    const QFileInfo info = model->fileInfo(mapToSource(index));
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    switch (index.column()) {
    case Size:
        // In whole kilobytes, rounded up, as the Chinese Windows desktop lists them.
        return info.isDir() ? QString()
                            : chinese.toString((info.size() + 1023) / 1024) + QStringLiteral(" KB");
    case Kind:
        if (info.isDir())
            return QStringLiteral("文件夹");
        return info.suffix().isEmpty() ? QStringLiteral("文件")
                                       : info.suffix().toUpper() + QStringLiteral(" 文件");
    case Modified:
        return chinese.toString(info.lastModified(), QStringLiteral("yyyy/M/d H:mm"));
    }
    return QIdentityProxyModel::data(index, role);
}

QVariant ChineseFileList::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QIdentityProxyModel::headerData(section, orientation, role);
    switch (section) {
    case Name: return QStringLiteral("名称");
    case Size: return QStringLiteral("大小");
    case Kind: return QStringLiteral("类型");
    case Modified: return QStringLiteral("修改日期");
    }
    return QIdentityProxyModel::headerData(section, orientation, role);
}

QString askSaveFileName(QWidget *parent, const QString &folder, const QString &filter)
{
#ifdef Q_OS_WIN
    return QFileDialog::getSaveFileName(parent, QString(), folder, filter, nullptr,
                                        QFileDialog::DontConfirmOverwrite);
#else
    QFileDialog dialog(parent, QString(), folder, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOptions(QFileDialog::DontConfirmOverwrite | QFileDialog::DontUseNativeDialog);
    dialog.setProxyModel(new ChineseFileList(&dialog));
    // The date column was sized for the English dates it no longer shows.
    if (auto *details = dialog.findChild<QTreeView *>(QStringLiteral("treeView")))
        details->header()->resizeSection(
            Modified, details->fontMetrics().horizontalAdvance(QStringLiteral("2026/12/31 23:59")) +
                          details->style()->pixelMetric(QStyle::PM_HeaderMargin) * 4);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
#endif
}

} // namespace quorvale
