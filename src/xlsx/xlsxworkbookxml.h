#pragma once

#include "xlsx/xlsxvocabulary.h"

#include <QByteArray>
#include <QString>
#include <functional>
#include <vector>

namespace quorvale::xlsx {

// workbook.xml as text: its sheet list, its date system and the few edits an
// export makes to it. Elements and attributes are found by namespace, so
// whatever prefixes its writer chose (x:sheet, a relationships prefix
// declared on each sheet element) are read and kept.
class WorkbookXml {
  public:
    struct Sheet {
        QByteArray relId;
        QString name;
        bool hidden = false;
        int sheetId = 0;
    };

    // False from isValid() when the root is no workbook in a known vocabulary.
    explicit WorkbookXml(QByteArray xml);

    bool isValid() const { return m_vocabulary != nullptr; }
    const Vocabulary &vocabulary() const { return *m_vocabulary; }
    // Serial numbers count days from 1904-01-01 instead of 1899-12-30.
    bool usesDate1904() const { return m_date1904; }
    // 审阅 → 保护工作簿: sheets may not be added, removed, renamed or unhidden.
    bool isStructureLocked() const { return m_structureLocked; }
    const QByteArray &xml() const { return m_xml; }

    std::vector<Sheet> sheets() const;
    // A new <sheet> right after the one whose relationship is `after` (or
    // last); false when the workbook has no sheet list to put it in.
    bool insertSheet(const QString &name, const QByteArray &relId, const QByteArray &after);
    // Puts the sheet with the relationship id first in the tab order. Names
    // that belong to one sheet and the window's active and first tab follow
    // their sheets. False when there is no such sheet.
    bool moveSheetFirst(const QByteArray &relId);
    // Takes the sheet out of the list with the names that belong to it.
    bool removeSheet(const QByteArray &relId);
    // Replaces the start tag of the sheet with the relationship id by edit(tag).
    void editSheet(const QByteArray &relId,
                   const std::function<QByteArray(const QByteArray &tag)> &edit);

  private:
    struct Found {
        qsizetype begin, end, tagEnd;
        Sheet sheet;
        QByteArray prefix;
    };
    std::vector<Found> scan() const;
    int indexOf(const QByteArray &relId) const;
    // Gives every sheet index of the part (local names, the window's active
    // and first tab) its new value; -1 marks a sheet that goes: its local
    // names go too, a tab on it moves to the one before.
    void renumberSheets(const std::function<int(int)> &map);

    QByteArray m_xml;
    const Vocabulary *m_vocabulary = nullptr;
    bool m_date1904 = false;
    bool m_structureLocked = false;
};

} // namespace quorvale::xlsx
