#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <atomic>
#include <thread>

namespace quorvale::xlsx {

// Checks every part of a workbook file against the checksum its zip entry
// records, on a thread of its own while the export computes its sheets:
// parts the export copies untouched are copied compressed, and a damaged
// one would make the result damaged too.
class PartVerifier {
  public:
    // bytes: the whole file; names: the entries to check.
    PartVerifier(QByteArray bytes, QStringList names);
    ~PartVerifier();
    PartVerifier(const PartVerifier &) = delete;
    PartVerifier &operator=(const PartVerifier &) = delete;

    struct Damage {
        QString part;         // empty: none
        quint64 tooLarge = 0; // inflated size, when beyond what any real workbook holds
    };
    // Waits for the check: the first damaged entry.
    Damage firstDamaged();

    // What any real workbook's parts stay far below; beyond it a part is
    // damaged or hostile (a zip bomb).
    static bool isTooLarge(quint64 uncompressed, quint64 compressed);

  private:
    void run();

    QByteArray m_bytes;
    QStringList m_names;
    Damage m_damaged;
    std::atomic<bool> m_stop{false};
    std::thread m_worker;
};

} // namespace quorvale::xlsx
