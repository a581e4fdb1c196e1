#include "ui/chinesefilelist.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileSystemModel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace quorvale;

// The Save As dialog's list reads Chinese whatever the system's language:
// no "Folder", "KiB" or "Nov" in it.
TEST(ChineseFileList, SizesKindsAndDatesReadChinese)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("月报");
    QFile book(dir.filePath("欠收.xlsx"));
    ASSERT_TRUE(book.open(QIODevice::WriteOnly));
    book.write(QByteArray(12 * 1024, 'x'));
    book.close();
    const QDateTime stamp(QDate(2026, 11, 24), QTime(9, 5));
    ASSERT_TRUE(book.open(QIODevice::ReadWrite));
    ASSERT_TRUE(book.setFileTime(stamp, QFileDevice::FileModificationTime));
    book.close();

    QFileSystemModel files;
    QSignalSpy loaded(&files, &QFileSystemModel::directoryLoaded);
    const QModelIndex root = files.setRootPath(dir.path());
    ASSERT_TRUE(loaded.wait(5000));
    ChineseFileList list;
    list.setSourceModel(&files);
    const auto row = [&](const QString &name) {
        QStringList cells;
        const QModelIndex at = list.mapFromSource(files.index(dir.filePath(name)));
        for (int c = 0; c < 4; ++c)
            cells << list.index(at.row(), c, list.mapFromSource(root)).data().toString();
        return cells;
    };
    EXPECT_EQ(row("欠收.xlsx").join(" | ").toStdString(), "欠收.xlsx | 12 KB | XLSX 文件 | 2026/11/24 9:05");
    EXPECT_EQ(row("月报").mid(0, 3).join(" | ").toStdString(), "月报 |  | 文件夹");
    QStringList headers;
    for (int c = 0; c < 4; ++c)
        headers << list.headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
    EXPECT_EQ(headers.join(" | ").toStdString(), "名称 | 大小 | 类型 | 修改日期");
}
