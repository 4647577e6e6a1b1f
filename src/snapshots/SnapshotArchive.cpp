#include "snapshots/SnapshotArchive.h"

#include "snapshots/SnapshotManifest.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QSaveFile>
#include <QUrl>

#include <archive.h>
#include <archive_entry.h>

#include <memory>
#include <optional>

namespace paravue
{

namespace
{

class ArchiveText
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotArchive)
};

const QString FilesFolder = QStringLiteral("files/");
const QString EditedFolder = QStringLiteral("edited/");
constexpr qsizetype LongestFileName = 100;

struct ReaderDeleter {
    void operator()(archive *reader) const { archive_read_free(reader); }
};
struct WriterDeleter {
    void operator()(archive *writer) const { archive_write_free(writer); }
};
struct EntryDeleter {
    void operator()(archive_entry *entry) const { archive_entry_free(entry); }
};

QByteArray checksum(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

// Writing

QString entryName(const QString &folder, const QString &name)
{
    return folder + QString::fromLatin1(QUrl::toPercentEncoding(name));
}

la_ssize_t appendBlock(archive *, void *target, const void *block, size_t size)
{
    static_cast<QByteArray *>(target)->append(static_cast<const char *>(block), qsizetype(size));
    return la_ssize_t(size);
}

/// Puts entries into a zip archive in the memory.
class ZipWriter
{
public:
    ZipWriter() : m_writer(archive_write_new()), m_entry(archive_entry_new())
    {
        m_isUsable =
            m_writer && m_entry && archive_write_set_format_zip(m_writer.get()) == ARCHIVE_OK &&
            archive_write_set_options(m_writer.get(), "compression=deflate,compression-level=9") ==
                ARCHIVE_OK &&
            archive_write_set_bytes_in_last_block(m_writer.get(), 1) == ARCHIVE_OK &&
            archive_write_open(m_writer.get(), &m_bytes, nullptr, appendBlock, nullptr) == ARCHIVE_OK;
    }

    void add(const QByteArray &name, const QByteArray &content, const QDateTime &time)
    {
        if (!m_isUsable)
            return;
        archive_entry_clear(m_entry.get());
        archive_entry_set_pathname(m_entry.get(), name.constData());
        archive_entry_set_filetype(m_entry.get(), AE_IFREG);
        archive_entry_set_perm(m_entry.get(), 0600);
        archive_entry_set_size(m_entry.get(), content.size());
        archive_entry_set_mtime(m_entry.get(), time.toSecsSinceEpoch(), 0);
        m_isUsable =
            archive_write_header(m_writer.get(), m_entry.get()) == ARCHIVE_OK &&
            archive_write_data(m_writer.get(), content.constData(), size_t(content.size())) == content.size();
    }

    std::optional<QByteArray> finish()
    {
        if (!m_isUsable || archive_write_close(m_writer.get()) != ARCHIVE_OK)
            return {};
        return m_bytes;
    }

private:
    QByteArray m_bytes;
    std::unique_ptr<archive, WriterDeleter> m_writer;
    std::unique_ptr<archive_entry, EntryDeleter> m_entry;
    bool m_isUsable = false;
};

// Reading

struct EntryOfArchive {
    QString name;
    qint64 size = 0; ///< as the archive says; -1 when it does not
    bool isFile = false;
};

/// Reads entry after entry of a zip archive in the memory.
class ZipReader
{
public:
    explicit ZipReader(const QByteArray &bytes) : m_reader(archive_read_new())
    {
        m_isUsable =
            m_reader && archive_read_support_format_zip(m_reader.get()) == ARCHIVE_OK &&
            archive_read_open_memory(m_reader.get(), bytes.constData(), size_t(bytes.size())) == ARCHIVE_OK;
    }

    /// Nothing at the end, and behind damage: isDamaged() then.
    std::optional<EntryOfArchive> next()
    {
        archive_entry *entry = nullptr;
        const int result = m_isUsable ? archive_read_next_header(m_reader.get(), &entry) : ARCHIVE_FATAL;
        if (result == ARCHIVE_EOF)
            return {};
        const char *name = result == ARCHIVE_OK ? archive_entry_pathname(entry) : nullptr;
        if (!name) {
            m_isDamaged = true;
            return {};
        }
        return EntryOfArchive{
            QString::fromUtf8(name), archive_entry_size_is_set(entry) ? archive_entry_size(entry) : -1,
            archive_entry_filetype(entry) == AE_IFREG && !archive_entry_is_encrypted(entry)};
    }

    /// The content of the present entry; nothing when it is damaged or larger than \a limit.
    std::optional<QByteArray> content(qint64 limit)
    {
        QByteArray content;
        for (;;) {
            const void *block = nullptr;
            size_t size = 0;
            la_int64_t offset = 0;
            const int result = archive_read_data_block(m_reader.get(), &block, &size, &offset);
            if (result == ARCHIVE_EOF)
                return content;
            if (result != ARCHIVE_OK || size > size_t(limit - content.size()))
                return {};
            content.append(static_cast<const char *>(block), qsizetype(size));
        }
    }

    bool isDamaged() const { return m_isDamaged; }

private:
    std::unique_ptr<archive, ReaderDeleter> m_reader;
    bool m_isUsable = false;
    bool m_isDamaged = false;
};

QString noSnapshot()
{
    return ArchiveText::tr("The file is no snapshot of a recorder.");
}

QString damaged()
{
    return ArchiveText::tr("The snapshot is damaged.");
}

QString tooLarge()
{
    return ArchiveText::tr("The snapshot is larger than the configuration of any recorder.");
}

/// The name of the file that the entry \a entry of the folder \a folder stands for; empty when it is none of
/// that folder.
QString fileName(const QString &entry, const QString &folder)
{
    return entry.startsWith(folder) ? QUrl::fromPercentEncoding(entry.sliced(folder.size()).toUtf8())
                                    : QString();
}

/// What is wrong with the files that \a manifest lists.
QString listProblem(const SnapshotManifest &manifest)
{
    if (manifest.files.size() > snapshotarchive::MaxFiles)
        return tooLarge();
    qint64 total = 0;
    for (auto file = manifest.files.cbegin(); file != manifest.files.cend(); ++file) {
        const QString name = file.key().startsWith(FilesFolder) ? fileName(file.key(), FilesFolder)
                                                                : fileName(file.key(), EditedFolder);
        if (!snapshotarchive::isPlainName(name))
            return ArchiveText::tr("The snapshot holds a file with the wrong name \"%1\".")
                .arg(file.key().left(LongestFileName));
        if (file->size > snapshotarchive::MaxUnpackedBytes - total)
            return tooLarge();
        total += file->size;
    }
    return {};
}

QString readManifest(ZipReader &reader, SnapshotManifest &manifest)
{
    const auto first = reader.next();
    if (!first || !first->isFile || first->name != QLatin1StringView(SnapshotManifest::EntryName))
        return noSnapshot();
    const auto json = reader.content(snapshotarchive::MaxManifestBytes);
    if (!json)
        return damaged();
    const QString problem = SnapshotManifest::read(*json, manifest);
    return problem.isEmpty() ? listProblem(manifest) : problem;
}

/// Reads one file into \a snapshot and takes it from the \a expected ones.
QString readFile(ZipReader &reader, const EntryOfArchive &entry,
                 QHash<QString, SnapshotManifest::File> &expected, Snapshot &snapshot)
{
    const auto listed = expected.constFind(entry.name);
    if (listed == expected.cend() || !entry.isFile)
        return ArchiveText::tr("The snapshot holds a file with the wrong name \"%1\".")
            .arg(entry.name.left(LongestFileName));
    const auto content = reader.content(listed->size);
    if (!content || content->size() != listed->size)
        return damaged();
    if (checksum(*content) != listed->sha256)
        return ArchiveText::tr("The file \"%1\" in the snapshot is not what was kept: its checksum is wrong.")
            .arg(entry.name);
    expected.erase(listed);
    if (entry.name.startsWith(FilesFolder))
        snapshot.files.insert(fileName(entry.name, FilesFolder), *content);
    else
        snapshot.edited.insert(fileName(entry.name, EditedFolder), *content);
    return {};
}

QString readFiles(ZipReader &reader, const SnapshotManifest &manifest, Snapshot &snapshot)
{
    auto expected = manifest.files;
    while (const auto entry = reader.next()) {
        if (const QString problem = readFile(reader, *entry, expected, snapshot); !problem.isEmpty())
            return problem;
    }
    return reader.isDamaged() || !expected.isEmpty() ? damaged() : QString();
}

snapshotarchive::Unpacked failed(const QString &problem)
{
    return {{}, problem};
}

snapshotarchive::Unpacked unpackPart(const QByteArray &bytes, bool withFiles)
{
    ZipReader reader(bytes);
    SnapshotManifest manifest;
    QString problem = readManifest(reader, manifest);
    if (!problem.isEmpty())
        return failed(problem);
    Snapshot snapshot;
    snapshot.info = manifest.info;
    for (auto file = manifest.files.cbegin(); file != manifest.files.cend(); ++file)
        snapshot.info.isEdited |= file.key().startsWith(EditedFolder);
    if (withFiles)
        problem = readFiles(reader, manifest, snapshot);
    if (!problem.isEmpty())
        return failed(problem);
    return {snapshot, {}};
}

std::optional<QByteArray> archiveAt(const QString &path, QString &problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        problem = ArchiveText::tr("The snapshot %1 cannot be read: %2").arg(path, file.errorString());
    else if (file.size() > snapshotarchive::MaxArchiveBytes)
        problem = tooLarge();
    if (!problem.isEmpty())
        return {};
    return file.read(snapshotarchive::MaxArchiveBytes);
}

} // namespace

namespace snapshotarchive
{

bool isPlainName(const QString &name)
{
    if (name.isEmpty() || name.size() > LongestFileName || name == QLatin1StringView(".") ||
        name == QLatin1StringView("..") || name.endsWith(QLatin1StringView(".original")))
        return false;
    return std::none_of(name.begin(), name.end(), [](QChar c) {
        return c == u'/' || c == u'\\' || c == u':' || c.category() == QChar::Other_Control ||
               c == QChar::ReplacementCharacter;
    });
}

Packed pack(const Snapshot &snapshot)
{
    SnapshotManifest manifest{snapshot.info, {}};
    QMap<QString, QByteArray> entries;
    qint64 total = 0;
    const auto add = [&](const QString &folder, const FileContents &files) {
        for (auto file = files.cbegin(); file != files.cend(); ++file) {
            if (!isPlainName(file.key())) {
                manifest.info.leftOut << file.key();
                continue;
            }
            const QString name = entryName(folder, file.key());
            entries.insert(name, *file);
            manifest.files.insert(name, {file->size(), checksum(*file)});
            total += file->size();
        }
    };
    add(FilesFolder, snapshot.files);
    add(EditedFolder, snapshot.edited);
    if (total > MaxUnpackedBytes || entries.size() > MaxFiles)
        return {{}, tooLarge()};

    ZipWriter writer;
    writer.add(SnapshotManifest::EntryName, manifest.toJson(), snapshot.info.time);
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry)
        writer.add(entry.key().toLatin1(), *entry, snapshot.info.time);
    const auto bytes = writer.finish();
    if (!bytes)
        return {{}, ArchiveText::tr("The snapshot cannot be packed.")};
    return {*bytes, {}};
}

Unpacked unpack(const QByteArray &archive)
{
    return unpackPart(archive, true);
}

Unpacked unpackInfo(const QByteArray &archive)
{
    return unpackPart(archive, false);
}

Unpacked read(const QString &path)
{
    QString problem;
    const auto bytes = archiveAt(path, problem);
    return bytes ? unpack(*bytes) : failed(problem);
}

Unpacked readInfo(const QString &path)
{
    QString problem;
    const auto bytes = archiveAt(path, problem);
    return bytes ? unpackInfo(*bytes) : failed(problem);
}

QString write(const Snapshot &snapshot, const QString &path)
{
    const Packed packed = pack(snapshot);
    if (!packed.problem.isEmpty())
        return packed.problem;
    // Beside the file, forced onto the disk, then renamed. A commit alone does not notice everywhere that the
    // last bytes could not be written.
    QSaveFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
                           file.write(packed.bytes) == packed.bytes.size() && file.flush() && file.commit();
    if (isWritten)
        return {};
    return ArchiveText::tr("The snapshot %1 cannot be written: %2").arg(path, file.errorString());
}

} // namespace snapshotarchive

} // namespace paravue
