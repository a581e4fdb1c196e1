#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

#include "xlsx/xlsxdeflater.h"
#include "xlsx/xlsxpartspool.h"

class QIODevice;

namespace quorvale::xlsx {

class ByteSink;
class PartVerifier;
class ZipReader;
struct ZipEntry;

// A generated part's compressed bytes: in memory while small, in the
// package's spool (a temporary file) once large.
struct CompressedPart {
    QByteArray head;
    std::vector<PartSpool::Span> spans; // after head, in order
    quint32 crc = 0;
    qint64 size = 0; // uncompressed
};

class Package;

// A part written in pieces: its XML goes to the compressor as it comes and
// what comes out waits on disk when it grows large. finish() puts the part
// into the package; a stream dropped unfinished leaves the package as it was.
class PartStream {
public:
    PartStream(Package &package, QString name);
    ~PartStream();
    PartStream(const PartStream &) = delete;
    PartStream &operator=(const PartStream &) = delete;

    ByteSink &sink() { return *m_sink; }
    void finish();

private:
    void keep(QByteArrayView compressed); // on the compressor's thread

    Package &m_package;
    QString m_name;
    std::shared_ptr<CompressedPart> m_part;
    QByteArray m_pending; // compressed bytes not yet in the spool
    std::unique_ptr<Deflater> m_deflater;
    std::unique_ptr<ByteSink> m_sink;
};

// The zip container of a workbook. Entries that nobody replaces are copied
// raw (still compressed) so they survive byte-for-byte.
class Package {
public:
    Package(); // empty, for a new workbook
    ~Package();
    Package(const Package &) = delete;
    Package &operator=(const Package &) = delete;

    // Reads the whole file; throws for unreadable, legacy or non-zip files.
    // readFrom: a copy to read instead, the package still named by path.
    static std::unique_ptr<Package> openFile(const QString &path, const QString &readFrom = {});

    bool contains(const QString &name) const { return find(name) != nullptr; }
    // Current content of an entry (replacement or original); throws if corrupt.
    QByteArray read(const QString &name) const;
    // Content as it was in the file, whatever has been put since.
    QByteArray readOriginal(const QString &name) const;
    void put(const QString &name, QByteArray content);
    // A part generated in pieces (PartStream::finish() puts it).
    std::unique_ptr<PartStream> stream(const QString &name);
    void remove(const QString &name);

    // The whole package into a device the caller makes safe; `target` names
    // the file in messages.
    void write(QIODevice &out, const QString &target) const;

    static QString displayName(const QString &path);

private:
    friend class PartStream;
    struct Entry {
        QString name;
        const ZipEntry *original = nullptr; // in the file read
        bool replaced = false;
        bool removed = false;
        QByteArray content;
        std::shared_ptr<CompressedPart> compressed;
    };
    Entry *find(const QString &name);
    const Entry *find(const QString &name) const;
    Entry &replace(const QString &name);
    PartSpool *spool();

    QString m_path;
    QByteArray m_bytes;
    std::unique_ptr<ZipReader> m_zip;
    std::vector<Entry> m_entries;
    QHash<QString, size_t> m_index; // lower-case name -> entry
    std::unique_ptr<PartSpool> m_spool;
    bool m_spoolTried = false;
    std::unique_ptr<PartVerifier> m_verifier;
};

} // namespace quorvale::xlsx
