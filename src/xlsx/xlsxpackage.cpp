#include "xlsx/xlsxpackage.h"

#include "xlsx/xlsxbytesink.h"
#include "xlsx/xlsxdeflater.h"
#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpartcheck.h"
#include "xlsx/xlsxpartverifier.h"

#include "xlsx/xlsxzipwriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace quorvale::xlsx {

namespace {

[[noreturn]] void notAWorkbook(const QString &path)
{
    throw Error(ErrorNumber::WorkbookError,
                       QStringLiteral("“%1”不是有效的 Excel 工作簿（.xlsx），或文件已损坏")
                           .arg(Package::displayName(path)));
}

constexpr quint64 MaxParsedPartSize = quint64(1) << 30;
// Generated parts go to the spool in pieces of this size (compressed), once
// they have one; smaller ones stay in memory.
constexpr qsizetype SpoolFrom = 256 * 1024;

[[noreturn]] void partTooLarge(const QString &part, quint64 size)
{
    throw Error(ErrorNumber::WorkbookError,
                QStringLiteral("工作簿部分“%1”解压后过大（至少 %2 MB），文件可能已损坏，已拒绝读取")
                    .arg(part)
                    .arg(size >> 20));
}

} // namespace

Package::Package() = default;
Package::~Package() = default;

QString Package::displayName(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

std::unique_ptr<Package> Package::openFile(const QString &path, const QString &readFrom)
{
    QFile file(readFrom.isEmpty() ? path : readFrom);
    if (!file.exists())
        throw Error(ErrorNumber::FileNotFound,
                           QStringLiteral("找不到文件“%1”").arg(displayName(path)));
    if (!file.open(QIODevice::ReadOnly))
        throw Error(ErrorNumber::PermissionDenied,
                           QStringLiteral("无法读取文件“%1”：%2")
                               .arg(displayName(path), file.errorString()));
    auto package = std::make_unique<Package>();
    package->m_path = path;
    package->m_bytes = file.readAll();
    const QByteArray &bytes = package->m_bytes;
    if (bytes.startsWith(QByteArrayView("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8)))
        throw Error(
            ErrorNumber::WorkbookError,
            // Password-protected .xlsx files are compound documents too.
            QStringLiteral("“%1”是旧版 Excel 97-2003 格式（.xls）或加密的工作簿，只能输出到未加密的 "
                           ".xlsx 格式工作簿")
                .arg(displayName(path)));
    if (!bytes.startsWith("PK\x03\x04"))
        notAWorkbook(path);
    package->m_zip = std::make_unique<ZipReader>(package->m_bytes);
    if (!package->m_zip->isValid())
        notAWorkbook(path);
    for (const ZipEntry &zipEntry : package->m_zip->entries()) {
        Entry entry;
        entry.name = zipEntry.name;
        entry.original = &zipEntry;
        if (entry.name.isEmpty() || entry.name.endsWith(u'/'))
            continue;
        // Part names are compared ignoring case: two that differ only in
        // case make no valid package, and either could be the one meant.
        const auto twin = package->m_index.constFind(entry.name.toLower());
        if (twin != package->m_index.cend())
            damagedPart(path, entry.name,
                        QStringLiteral("与部分“%1”的名称只有大小写不同")
                            .arg(package->m_entries[*twin].name));
        package->m_index.insert(entry.name.toLower(), package->m_entries.size());
        package->m_entries.push_back(std::move(entry));
    }
    if (package->m_entries.empty())
        notAWorkbook(path);
    QStringList names;
    for (const Entry &entry : package->m_entries)
        names.append(entry.name);
    package->m_verifier = std::make_unique<PartVerifier>(package->m_bytes, names);
    return package;
}

Package::Entry *Package::find(const QString &name)
{
    const auto it = m_index.constFind(name.toLower());
    if (it == m_index.cend() || m_entries[*it].removed)
        return nullptr;
    return &m_entries[*it];
}

const Package::Entry *Package::find(const QString &name) const
{
    return const_cast<Package *>(this)->find(name);
}

QByteArray Package::read(const QString &name) const
{
    const Entry *entry = find(name);
    if (!entry)
        return {};
    if (entry->replaced)
        return entry->content;
    return readOriginal(name);
}

QByteArray Package::readOriginal(const QString &name) const
{
    const auto it = m_index.constFind(name.toLower());
    if (it == m_index.cend() || !m_entries[*it].original)
        return {};
    const Entry &entry = m_entries[*it];
    const ZipEntry &info = *entry.original;
    // A part is expanded in memory to be parsed: a zip bomb is refused before
    // it is, and the declared size is not trusted while reading either.
    if (PartVerifier::isTooLarge(info.uncompressedSize, info.compressedSize))
        partTooLarge(entry.name, info.uncompressedSize);
    QByteArray content;
    const quint64 limit = std::min<quint64>(info.uncompressedSize, MaxParsedPartSize);
    switch (m_zip->inflate(info, limit, content)) {
    case ZipReader::Status::Ok:
        return content;
    case ZipReader::Status::TooLarge:
        partTooLarge(entry.name, limit + 1);
    case ZipReader::Status::CrcMismatch:
        damagedPart(m_path, entry.name, QStringLiteral("内容与压缩包记录的校验和不符"));
    case ZipReader::Status::Damaged:
    case ZipReader::Status::Unsupported:
    case ZipReader::Status::Stopped:
        break;
    }
    notAWorkbook(m_path);
}

Package::Entry &Package::replace(const QString &name)
{
    Entry *entry = find(name);
    if (!entry) {
        const auto it = m_index.constFind(name.toLower());
        if (it != m_index.cend()) {
            entry = &m_entries[*it];
            entry->removed = false;
        } else {
            m_index.insert(name.toLower(), m_entries.size());
            m_entries.push_back(Entry{.name = name, .content = {}, .compressed = nullptr});
            entry = &m_entries.back();
        }
    }
    entry->replaced = true;
    entry->content.clear();
    entry->compressed.reset();
    return *entry;
}

void Package::put(const QString &name, QByteArray content)
{
    replace(name).content = std::move(content);
}

std::unique_ptr<PartStream> Package::stream(const QString &name)
{
    return std::make_unique<PartStream>(*this, name);
}

PartSpool *Package::spool()
{
    if (!m_spoolTried) {
        m_spoolTried = true;
        auto spool = std::make_unique<PartSpool>();
        if (spool->isAvailable())
            m_spool = std::move(spool);
    }
    return m_spool.get();
}

PartStream::PartStream(Package &package, QString name)
    : m_package(package), m_name(std::move(name)), m_part(std::make_shared<CompressedPart>())
{
    m_package.spool(); // made here, not on the compressor's thread
    m_deflater = std::make_unique<Deflater>(Deflater::DefaultLevel,
                                            [this](QByteArrayView bytes) { keep(bytes); });
    m_sink = std::make_unique<ByteSink>(
        [this](std::string &&chunk) { m_deflater->push(std::move(chunk)); }, SpoolFrom);
}

PartStream::~PartStream() = default;

void PartStream::keep(QByteArrayView compressed)
{
    PartSpool *spool = m_package.m_spool.get();
    QByteArray &into = m_part->spans.empty() ? m_part->head : m_pending;
    into.append(compressed);
    if (spool && into.size() >= SpoolFrom) {
        m_part->spans.push_back(spool->store(into));
        into.clear();
    }
}

void PartStream::finish()
{
    m_sink->flush();
    const Deflater::Result result = m_deflater->finish();
    if (!m_pending.isEmpty())
        m_part->spans.push_back(m_package.m_spool->store(m_pending));
    m_pending.clear();
    m_part->crc = result.crc;
    m_part->size = result.size;
    m_package.replace(m_name).compressed = std::move(m_part);
}

void Package::remove(const QString &name)
{
    if (Entry *entry = find(name))
        entry->removed = true;
}

void Package::write(QIODevice &out, const QString &target) const
{
    // Parts copied as they are must be sound, or the result is damaged too.
    if (m_verifier) {
        const PartVerifier::Damage damage = m_verifier->firstDamaged();
        if (damage.tooLarge)
            partTooLarge(damage.part, damage.tooLarge);
        if (!damage.part.isEmpty())
            damagedPart(m_path, damage.part, QStringLiteral("内容与压缩包记录的校验和不符"));
    }
    const QString shown = displayName(target);
    auto fail = [&](const QString &why) {
        throw Error(ErrorNumber::PathFileAccessError,
                    QStringLiteral("无法保存“%1”：%2").arg(shown, why));
    };
    ZipWriter zip(out);
    for (const Entry &entry : m_entries) {
        if (entry.removed)
            continue;
        QByteArray compressed; // of a small part, compressed here
        QByteArrayView raw;
        const std::vector<PartSpool::Span> *spans = nullptr;
        ZipEntry info;
        if (!entry.replaced) {
            raw = m_zip->rawData(*entry.original);
            if (quint64(raw.size()) != entry.original->compressedSize)
                notAWorkbook(m_path);
            info = ZipWriter::copiedEntry(*entry.original);
        } else if (entry.compressed) {
            raw = entry.compressed->head;
            spans = &entry.compressed->spans;
            quint64 compressedSize = quint64(raw.size());
            for (const PartSpool::Span &span : *spans)
                compressedSize += quint64(span.length);
            info = ZipWriter::newEntry(entry.name, entry.compressed->crc, compressedSize,
                                       quint64(entry.compressed->size));
        } else {
            Deflater::Result result;
            compressed = Deflater::compress(entry.content, result);
            raw = compressed;
            info = ZipWriter::newEntry(entry.name, result.crc, quint64(raw.size()),
                                       quint64(result.size));
        }
        if (!zip.fits(info))
            fail(QStringLiteral("工作表过大"));
        if (!zip.begin(std::move(info)))
            fail(out.errorString());
        const auto writeRaw = [&](QByteArrayView bytes) {
            if (!zip.write(bytes))
                fail(out.errorString());
        };
        writeRaw(raw);
        if (spans)
            for (const PartSpool::Span &span : *spans)
                m_spool->read(span, writeRaw);
    }
    if (!zip.finish())
        fail(out.errorString());
}

} // namespace quorvale::xlsx
