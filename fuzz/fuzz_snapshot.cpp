// Requires that an archive is read as a whole or refused with a message, within its limits, and that what
// was read is written and read again as it is. Files of an input without an archive become one; no secret is
// in it then.
//
// Input: an archive, which begins with "P"; or "E", then pieces, which are the names and contents of the
// entries of one; or another byte, then pieces, which are the names and contents of files.

#include "FuzzInput.h"
#include "InputTime.h"
#include "Require.h"

#include "changes/SecretKeys.h"
#include "snapshots/SecretRemoval.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotDifferences.h"

#include <QLoggingCategory>

#include <archive.h>
#include <archive_entry.h>

using namespace paravue;
using namespace paravue::fuzz;

namespace
{

void requireSame(const Snapshot &a, const Snapshot &b)
{
    require(a.info == b.info && a.files == b.files && a.edited == b.edited, "what was written is read again");
}

void checkArchive(const QByteArray &bytes)
{
    const auto [snapshot, problem] = snapshotarchive::unpack(bytes);
    const auto [known, infoProblem] = snapshotarchive::unpackInfo(bytes);
    if (!problem.isEmpty()) {
        require(snapshot.files.isEmpty() && snapshot.edited.isEmpty(), "a refused archive leaves nothing");
        return;
    }
    require(infoProblem.isEmpty() && known.info == snapshot.info, "what is known of it stands in the list");
    qint64 total = 0;
    for (const FileContents *files : {&snapshot.files, &snapshot.edited}) {
        for (auto file = files->cbegin(); file != files->cend(); ++file) {
            require(snapshotarchive::isPlainName(file.key()), "names are plain");
            total += file->size();
        }
    }
    require(total <= snapshotarchive::MaxUnpackedBytes, "an archive is unpacked within its limit");
    const auto packed = snapshotarchive::pack(snapshot);
    require(packed.problem.isEmpty(), "what was read can be written");
    requireSame(snapshotarchive::unpack(packed.bytes).snapshot, snapshot);
}

/// Changed bytes rarely give an archive whose own checksums are right.
QByteArray zipOf(const QList<QByteArray> &pieces)
{
    QByteArray bytes;
    const auto append = [](archive *, void *target, const void *block, size_t size) {
        static_cast<QByteArray *>(target)->append(static_cast<const char *>(block), qsizetype(size));
        return la_ssize_t(size);
    };
    archive *writer = archive_write_new();
    archive_write_set_format_zip(writer);
    archive_write_set_options(writer, "compression=store");
    archive_write_open(writer, &bytes, nullptr, append, nullptr);
    archive_entry *entry = archive_entry_new();
    for (qsizetype i = 0; i + 1 < pieces.size(); i += 2) {
        archive_entry_clear(entry);
        archive_entry_set_pathname(entry, pieces[i].constData());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_entry_set_size(entry, pieces[i + 1].size());
        archive_write_header(writer, entry);
        archive_write_data(writer, pieces[i + 1].constData(), size_t(pieces[i + 1].size()));
    }
    archive_entry_free(entry);
    archive_write_close(writer);
    archive_write_free(writer);
    return bytes;
}

/// A key whose name tells it keeps no value, in lines of any form.
void checkNoSecrets(const FileContents &files)
{
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (file.key() == QLatin1StringView("interface"))
            continue;
        const FileValues values(*file);
        for (auto value = values.all().cbegin(); value != values.all().cend(); ++value) {
            const bool isDirective = value.key().contains(u"#!");
            require(value->isEmpty() || isDirective ||
                        !SecretKeys().contains(file.key() + u'/' + value.key()),
                    "no secret is kept");
        }
    }
}

void checkFiles(const QList<QByteArray> &pieces)
{
    Snapshot snapshot;
    snapshot.info.time = QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    for (qsizetype i = 0; i + 1 < pieces.size(); i += 2) {
        const QString name = QString::fromUtf8(pieces[i]);
        if (snapshotarchive::isPlainName(name))
            snapshot.files.insert(name, pieces[i + 1]);
    }
    snapshot.info.leftOut = removeSecrets(snapshot.files);
    checkNoSecrets(snapshot.files);
    require(differences(snapshot, snapshot).isEmpty(), "a snapshot is like itself");
    const auto packed = snapshotarchive::pack(snapshot);
    require(packed.problem.isEmpty(), "files can be packed");
    requireSame(snapshotarchive::unpack(packed.bytes).snapshot, snapshot);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    QLoggingCategory::setFilterRules("paravue.pattern=false");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const InputTime time;
    FuzzInput input(data, size);
    if (size == 0 || data[0] == 'P') {
        checkArchive(input.rest());
        return 0;
    }
    const bool areEntries = input.takeByte() == 'E';
    if (areEntries)
        checkArchive(zipOf(input.pieces()));
    else
        checkFiles(input.pieces());
    return 0;
}
