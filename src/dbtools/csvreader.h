#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class QIODevice;

namespace quorvale {

// One field of a CSV record. An unquoted empty field is how a file says NULL;
// a quoted one ("") is an empty text.
struct CsvField {
    QString text;
    bool quoted = false;
};

// Reads RFC 4180 CSV (UTF-8, optional byte-order mark, CRLF or LF) record by
// record without holding the file. Blank lines are skipped. Malformed input
// throws RuntimeError "NAME line N[, column C]: what is wrong". The caller
// checks the device for read errors at the end.
class CsvReader {
  public:
    CsvReader(QIODevice &device, QString name);

    // The next record, false at the end of the file.
    bool next(QList<CsvField> &record);
    // The line on which the last record began (1-based).
    int recordLine() const { return m_recordLine; }

    static constexpr qsizetype maxFieldBytes = 1 << 20;
    static constexpr qsizetype maxFields = 4096;

  private:
    int get(); // next byte, -1 at the end
    int peek();
    [[noreturn]] void fail(const QString &what, int column = 0) const;
    CsvField finish(QByteArray &bytes, bool quoted, int column) const;

    QIODevice &m_device;
    QString m_name;
    QByteArray m_buffer;
    qsizetype m_pos = 0;
    bool m_started = false;
    int m_line = 1;
    int m_recordLine = 0;
};

} // namespace quorvale
