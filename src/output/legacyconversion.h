#pragma once

#include <QString>
#include <QTemporaryDir>
#include <chrono>

namespace quorvale {

// An Excel 97-2003 workbook (NAME.xls) that an export is pointed at: a copy
// of it converted to NAME.xlsx by LibreOffice headless, in a private folder
// with a profile of its own, for the export to read and save beside the
// original. The .xls is only ever read. Errors are RuntimeError saying why
// the export is refused (no LibreOffice, NAME.xlsx exists, the conversion
// failed or took too long).
class LegacyConversion {
  public:
    static constexpr std::chrono::seconds DefaultTimeLimit{120};

    // An existing file named .xls, which the export cannot write as it is.
    static bool applies(const QString &path);
    // NAME.xls -> NAME.xlsx in the same folder.
    static QString convertedName(const QString &xlsPath);
    // LibreOffice's soffice where it is installed; empty otherwise.
    static QString soffice();

    explicit LegacyConversion(const QString &xlsPath,
                              std::chrono::milliseconds timeLimit = DefaultTimeLimit);

    // The converted workbook in the private folder (gone with this object).
    const QString &converted() const { return m_converted; }
    // "已转换为 NAME.xlsx 并输出到其中；原文件 NAME.xls 未改动"
    QString note() const;

  private:
    QString m_xls;
    QTemporaryDir m_work;
    QString m_converted;
};

} // namespace quorvale
