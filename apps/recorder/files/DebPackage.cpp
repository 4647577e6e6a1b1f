#include "recorder/files/DebPackage.h"

#include "recorder/files/Gzip.h"

#include <QMap>
#include <QRegularExpression>

#include <archive.h>
#include <archive_entry.h>

#include <initializer_list>
#include <memory>
#include <optional>

namespace recorder
{

namespace
{

/// Of the control file, and of compressed control data once it is unpacked.
constexpr qsizetype MaxControlData = 1024 * 1024;

struct ArchiveDeleter {
    void operator()(archive *reader) const { archive_read_free(reader); }
};
using ArchiveReader = std::unique_ptr<archive, ArchiveDeleter>;
using ArchiveSupport = int (*)(archive *);

/// Reads \a bytes, which it does not copy, in the formats and compressions of \a supported only.
ArchiveReader openArchive(const QByteArray &bytes, std::initializer_list<ArchiveSupport> supported)
{
    ArchiveReader reader(archive_read_new());
    if (!reader)
        return nullptr;
    for (const ArchiveSupport enable : supported)
        enable(reader.get());
    const bool isOpen =
        archive_read_open_memory(reader.get(), bytes.constData(), size_t(bytes.size())) == ARCHIVE_OK;
    return isOpen ? std::move(reader) : nullptr;
}

bool isUsable(int result)
{
    return result == ARCHIVE_OK || result == ARCHIVE_WARN;
}

/// Moves to the next entry and returns its name; empty at the end and when the archive is damaged.
QByteArray nextEntry(archive *reader)
{
    archive_entry *entry = nullptr;
    return isUsable(archive_read_next_header(reader, &entry)) ? QByteArray(archive_entry_pathname(entry))
                                                              : QByteArray();
}

/// The content of the present entry; nothing when it is damaged or larger than \a maximumSize.
std::optional<QByteArray> entryContent(archive *reader, qsizetype maximumSize)
{
    QByteArray content;
    for (;;) {
        const void *block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        const int result = archive_read_data_block(reader, &block, &size, &offset);
        if (result == ARCHIVE_EOF)
            return content;
        if (!isUsable(result) || size > size_t(maximumSize - content.size()))
            return std::nullopt;
        content.append(static_cast<const char *>(block), qsizetype(size));
    }
}

/// The tar archive in the control data; nothing when it is damaged or unpacks to more than MaxControlData.
std::optional<QByteArray> controlTar(const QByteArray &packed)
{
    // zlib compares the checksum, which libarchive skips.
    if (isGzip(packed))
        return gunzip(packed, MaxControlData);
    const ArchiveReader reader =
        openArchive(packed, {archive_read_support_filter_xz, archive_read_support_filter_zstd,
                             archive_read_support_format_raw});
    constexpr int PlainFilters = 1;
    const int filters = reader ? archive_filter_count(reader.get()) : PlainFilters;
    if (filters == PlainFilters)
        return packed;
    // Compressed twice, a small package could hold data that takes hours to unpack to nothing.
    if (filters > PlainFilters + 1 || nextEntry(reader.get()).isEmpty())
        return std::nullopt;
    return entryContent(reader.get(), MaxControlData);
}

std::optional<QByteArray> controlFile(const QByteArray &tar)
{
    const ArchiveReader reader = openArchive(tar, {archive_read_support_format_tar});
    QByteArray name;
    do {
        name = reader ? nextEntry(reader.get()) : QByteArray();
    } while (!name.isEmpty() && name != "./control" && name != "control");
    return name.isEmpty() ? std::nullopt : entryContent(reader.get(), MaxControlData);
}

/// The "Name: value" lines, without the lines that continue a value and begin with a blank.
QMap<QByteArray, QByteArray> parseFields(const QByteArray &control)
{
    QMap<QByteArray, QByteArray> found;
    for (const QByteArray &line : control.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && !line.startsWith(' ') && !line.startsWith('\t'))
            found.insert(line.first(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    return found;
}

DebPackage failure(const QString &fault)
{
    DebPackage package;
    package.fault = fault;
    return package;
}

/// The text without quotes, which would break the list of packages, and cut.
QByteArray listText(QByteArray text)
{
    return text.replace('\'', "").replace('"', "").left(120);
}

DebPackage parseControl(const QByteArray &control)
{
    const QMap<QByteArray, QByteArray> field = parseFields(control);
    static const QRegularExpression name(QStringLiteral("^[a-z0-9][a-z0-9+.-]{1,63}$"));
    static const QRegularExpression version(QStringLiteral("^[A-Za-z0-9.+:~-]{1,64}$"));
    const auto fits = [&](const QRegularExpression &pattern, const char *key) {
        return pattern.match(QString::fromUtf8(field.value(key))).hasMatch();
    };
    if (!fits(name, "package"))
        return failure(QStringLiteral("the package has no proper name"));
    if (!fits(version, "version"))
        return failure(QStringLiteral("the package has no proper version"));
    const QByteArray priority = listText(field.value("priority", "optional"));
    return {field.value("package"), field.value("version"), listText(field.value("description")), priority,
            QString()};
}

} // namespace

DebPackage readDebPackage(const QByteArray &file)
{
    const ArchiveReader reader = openArchive(file, {archive_read_support_format_ar});
    if (!reader || nextEntry(reader.get()) != "debian-binary")
        return failure(QStringLiteral("this is no package"));
    if (!entryContent(reader.get(), file.size()).value_or(QByteArray()).startsWith("2."))
        return failure(QStringLiteral("the format of the package is unknown"));
    const QByteArray controlName = nextEntry(reader.get());
    if (!controlName.startsWith("control.tar"))
        return failure(QStringLiteral("the package has no control data"));
    const std::optional<QByteArray> control = entryContent(reader.get(), file.size());
    if (!control || !nextEntry(reader.get()).startsWith("data.tar"))
        return failure(QStringLiteral("the package is incomplete"));
    if (!QByteArrayList{"control.tar", "control.tar.gz", "control.tar.xz", "control.tar.zst"}.contains(
            controlName))
        return failure(QStringLiteral("the control data of the package is not packed with gzip"));
    const std::optional<QByteArray> tar = controlTar(*control);
    const std::optional<QByteArray> text = tar ? controlFile(*tar) : std::nullopt;
    return text ? parseControl(*text) : failure(QStringLiteral("the control data of the package is damaged"));
}

} // namespace recorder
