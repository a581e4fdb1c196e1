#pragma once

#include <QByteArray>
#include <QBuffer>
#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "xlsx/xlsxdeflater.h"
#include "xlsx/xlsxpartspool.h"

class QIODevice;
class QuaZip;

namespace quorvale::xlsx {

class ByteSink;
class PartVerifier;

// The zip container of a workbook. Entries that nobody replaces are copied
// raw (still compressed) so they survive byte-for-byte.
class Package {
public:
    using Generator = std::function<void(ByteSink &)>;

    Package(); // empty, for a new workbook
    ~Package();
    Package(const Package &) = delete;
    Package &operator=(const Package &) = delete;

    // Reads the whole file; throws for unreadable, legacy or non-zip files.
    static std::unique_ptr<Package> openFile(const QString &path);

    bool contains(const QString &name) const { return find(name) != nullptr; }
    // Current content of an entry (replacement or original); throws if corrupt.
    QByteArray read(const QString &name) const;
    // Content as it was in the file, whatever has been put since.
    QByteArray readOriginal(const QString &name) const;
    void put(const QString &name, QByteArray content);
    // Where a generated part waits for the save: a part finished long before
    // it (one sheet of several) may wait on disk, if it is large.
    enum class Hold { Memory, DiskIfLarge };
    // Content streamed from a generator into the compressor right away, so a
    // large sheet is held compressed only.
    void putGenerated(const QString &name, const Generator &generator, Hold hold = Hold::Memory);
    void remove(const QString &name);

    // Temporary file beside the target, renamed over it when complete.
    void save(const QString &path) const;
    // The whole package into a device the caller makes safe; `target` names
    // the file in messages.
    void write(QIODevice &out, const QString &target) const;

    static QString displayName(const QString &path);

private:
    struct Entry {
        QString name;
        bool original = false;
        bool replaced = false;
        bool removed = false;
        QByteArray content;
        std::shared_ptr<Deflater::Result> compressed;
        PartSpool::Span spooled; // where `compressed`'s bytes went, when they did
    };
    Entry *find(const QString &name);
    const Entry *find(const QString &name) const;
    void openReader() const;

    QString m_path;
    QByteArray m_bytes;
    mutable QBuffer m_buffer;
    mutable std::unique_ptr<QuaZip> m_reader;
    std::vector<Entry> m_entries;
    QHash<QString, size_t> m_index; // lower-case name -> entry
    std::unique_ptr<PartSpool> m_spool;
    std::unique_ptr<PartVerifier> m_verifier;
};

} // namespace quorvale::xlsx
