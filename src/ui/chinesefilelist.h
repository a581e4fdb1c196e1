#pragma once

#include <QIdentityProxyModel>

class QFileSystemModel;

namespace quorvale {

// The file list of Qt's own file dialog in the program's language: sizes,
// kinds and dates as a Chinese desktop shows them ("12 KB", "文件夹",
// "XLSX 文件", "2026/11/24 9:05") and Chinese column names. Qt writes them
// in the system's language whatever the program's is.
class ChineseFileList : public QIdentityProxyModel {
    Q_OBJECT

  public:
    using QIdentityProxyModel::QIdentityProxyModel;

    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    const QFileSystemModel *files() const;
};

// The Save As dialog of the export: the platform's own where it has one
// (Windows), else Qt's with its file list in Chinese. Existing files are
// not questioned (the export writes into them). Empty when cancelled.
QString askSaveFileName(QWidget *parent, const QString &folder, const QString &filter);

} // namespace quorvale
