#include "DebFile.h"

#include <archive.h>
#include <archive_entry.h>

#include <memory>

namespace paravue::test
{

namespace
{

QByteArray written(const ArchiveFiles &files, int (*setFormat)(archive *), int filter = ARCHIVE_FILTER_NONE)
{
    constexpr qsizetype Overhead = 64 * 1024;
    qsizetype room = Overhead;
    for (const auto &[name, content] : files)
        room += content.size() + Overhead;
    QByteArray bytes(room, Qt::Uninitialized);
    size_t used = 0;
    const std::unique_ptr<archive, decltype(&archive_write_free)> writer(archive_write_new(),
                                                                         archive_write_free);
    setFormat(writer.get());
    archive_write_add_filter(writer.get(), filter);
    archive_write_set_bytes_in_last_block(writer.get(), 1); // no filler behind the end
    archive_write_open_memory(writer.get(), bytes.data(), size_t(bytes.size()), &used);
    const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(archive_entry_new(),
                                                                              archive_entry_free);
    for (const auto &[name, content] : files) {
        archive_entry_clear(entry.get());
        archive_entry_set_pathname(entry.get(), name.constData());
        archive_entry_set_filetype(entry.get(), name.endsWith('/') ? AE_IFDIR : AE_IFREG);
        archive_entry_set_perm(entry.get(), 0644);
        archive_entry_set_size(entry.get(), content.size());
        archive_write_header(writer.get(), entry.get());
        archive_write_data(writer.get(), content.constData(), size_t(content.size()));
    }
    const bool isComplete = archive_write_close(writer.get()) == ARCHIVE_OK;
    return bytes.first(isComplete ? qsizetype(used) : 0);
}

} // namespace

QByteArray arArchive(const ArchiveFiles &files)
{
    return written(files, archive_write_set_format_ar_bsd);
}

QByteArray tarArchive(const ArchiveFiles &files)
{
    return written(files, archive_write_set_format_ustar);
}

QByteArray compressed(const QByteArray &bytes, int filter)
{
    return written({{"bytes", bytes}}, archive_write_set_format_raw, filter);
}

QByteArray debFile(const QByteArray &control)
{
    return arArchive({{"debian-binary", "2.0\n"},
                      {"control.tar", tarArchive({{"./", {}}, {"./control", control}})},
                      {"data.tar", {}}});
}

} // namespace paravue::test
