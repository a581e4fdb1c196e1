#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <memory>
#include <vector>

namespace quorvale::xlsx {

class ByteSink;
struct Vocabulary;

// The shared string table. Repeated report texts (office, building, fee
// names) are stored once, which keeps the sheet XML and its compression
// small. Existing entries are kept as they are; new ones are appended.
class SharedStrings {
public:
    // A new table in the workbook's vocabulary.
    explicit SharedStrings(const Vocabulary &vocabulary);
    explicit SharedStrings(QByteArray existingXml);

    quint32 add(const QString &text);
    // The text of an index add() returned.
    QStringView added(quint32 index) const { return m_added[index - m_existing]; }
    bool isModified() const { return !m_added.empty(); }
    // Entries the table had when it was read.
    quint32 existingCount() const { return m_existing; }
    void write(ByteSink &sink) const;

private:
    QByteArray m_xml;
    QByteArray m_namespace; // of a new table
    QByteArray m_prefix;
    qsizetype m_rootBegin = -1, m_rootStartEnd = -1, m_closeBegin = -1;
    quint32 m_existing = 0;
    void grow();

    // Added texts are copied into large blocks rather than kept as strings:
    // a month-end workbook carries every report's distinct texts to the
    // save, and one allocation per text would double what they take.
    QStringView store(QStringView text);
    std::vector<std::unique_ptr<char16_t[]>> m_blocks;
    qsizetype m_blockFree = 0;

    // Open addressing over the added texts: an export adds a string per
    // cell, and this lookup is the bulk of the time spent on a cell.
    std::vector<QStringView> m_added;
    std::vector<quint64> m_hashes;  // per added text
    std::vector<quint32> m_slots;   // 0 free, else index into m_added + 1
};

} // namespace quorvale::xlsx
