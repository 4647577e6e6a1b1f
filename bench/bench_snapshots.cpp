// Snapshots of a recorder's files: how large they are, and how long they take to keep and to compare.

#include "PairedRatio.h"

#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotDifferences.h"
#include "snapshots/SnapshotFolder.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <stdexcept>

#include <archive.h>
#include <archive_entry.h>
#include <zlib.h>

namespace
{

using namespace paravue;

/// The files of the simulated recorder.
FileContents modelFiles()
{
    FileContents files;
    for (const QString name : {"disk", "net", "soft", "state", "streams", "time", "timers", "users"}) {
        QFile file(":/recorder/model/" + name);
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("there is no model");
        files.insert(name, file.readAll());
    }
    QFile description(":/recorder/model/interface.xml");
    if (!description.open(QIODevice::ReadOnly))
        throw std::runtime_error("there is no model");
    files.insert("interface", description.readAll());
    return files;
}

QByteArray manyValues(int count, const QByteArray &value)
{
    QByteArray values = "[ untitled ]\r\n";
    for (int i = 0; i < count; ++i)
        values += "VALUE_" + QByteArray::number(i) + "='" + value + ' ' + QByteArray::number(i) + "'\r\n";
    return values;
}

/// The files of the recorder, and in place of one of them one with \a values values when that is not 0.
FileContents filesWith(int values)
{
    FileContents files = modelFiles();
    if (values > 0)
        files["net"] = manyValues(values, "Value number");
    return files;
}

QByteArray packed(const QByteArray &content)
{
    uLongf size = compressBound(uLong(content.size()));
    QByteArray bytes(qsizetype(size), Qt::Uninitialized);
    compress2(reinterpret_cast<Bytef *>(bytes.data()), &size,
              reinterpret_cast<const Bytef *>(content.constData()), uLong(content.size()),
              Z_BEST_COMPRESSION);
    return bytes.first(qsizetype(size));
}

/// A zip archive of plain files, as other tools make it.
QByteArray zipOf(const FileContents &files)
{
    QByteArray bytes;
    archive *writer = archive_write_new();
    archive_entry *entry = archive_entry_new();
    const auto append = [](archive *, void *target, const void *block, size_t size) {
        static_cast<QByteArray *>(target)->append(static_cast<const char *>(block), qsizetype(size));
        return la_ssize_t(size);
    };
    archive_write_set_format_zip(writer);
    archive_write_set_options(writer, "compression-level=9");
    archive_write_set_bytes_in_last_block(writer, 1);
    archive_write_open(writer, &bytes, nullptr, append, nullptr);
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        archive_entry_clear(entry);
        archive_entry_set_pathname(entry, file.key().toUtf8().constData());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_entry_set_size(entry, file->size());
        archive_write_header(writer, entry);
        archive_write_data(writer, file->constData(), size_t(file->size()));
    }
    archive_write_close(writer);
    archive_entry_free(entry);
    archive_write_free(writer);
    return bytes;
}

/// A snapshot beside a zip archive of its plain files.
void sizeOfSnapshot(benchmark::State &state)
{
    Snapshot snapshot;
    snapshot.info.recorder = "192.168.10.20";
    snapshot.info.model = "Paravue R4";
    snapshot.info.firmware = "4.2.1";
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    snapshot.files = filesWith(int(state.range(0)));
    const qsizetype plain = zipOf(snapshot.files).size();
    qsizetype kept = 0;
    for (auto _ : state)
        kept = snapshotarchive::pack(snapshot).bytes.size();
    constexpr double Limit = 1.05;
    const double ratio = double(kept) / double(plain);
    state.counters["ratio"] = ratio;
    state.counters["limit"] = Limit;
    state.counters["KiB"] = double(kept) / 1024;
    state.SetLabel(ratio <= Limit ? "within limit" : "OVER LIMIT");
}
BENCHMARK(sizeOfSnapshot)->Arg(0)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);

/// Keeping a snapshot without its secrets, beside packing the same files.
void keepSnapshot(benchmark::State &state)
{
    const FileContents files = filesWith(int(state.range(0)));
    const QTemporaryDir root;
    SnapshotFolder folder(root.path(), "recorder");
    bench::pairedRatio(
        state,
        [&] {
            if (!folder.keep(files).problem.isEmpty())
                throw std::runtime_error("a snapshot cannot be kept");
        },
        [&] {
            for (const QByteArray &content : files)
                benchmark::DoNotOptimize(packed(content));
        },
        {.limit = 3});
}
BENCHMARK(keepSnapshot)->Arg(100'000)->Apply(bench::applyPaired);

/// Reading and comparing two snapshots with 100,000 values, beside QSettings, which only parses both.
void compareSnapshots(benchmark::State &state)
{
    constexpr int Values = 100'000;
    Snapshot before;
    before.info.time = QDateTime::currentDateTimeUtc();
    before.files = {{"net", manyValues(Values, "Value number")}};
    Snapshot after = before;
    after.files["net"].replace("number 77", "changed 77");
    const QByteArray one = snapshotarchive::pack(before).bytes;
    const QByteArray other = snapshotarchive::pack(after).bytes;
    const QTemporaryDir folder;
    for (const Snapshot *snapshot : {&before, &after}) {
        QFile file(folder.filePath(snapshot == &before ? "before" : "after"));
        if (!file.open(QIODevice::WriteOnly) || file.write(snapshot->files["net"]) < 0)
            throw std::runtime_error("cannot write the file");
    }
    bench::pairedRatio(
        state,
        [&] {
            const auto found =
                differences(snapshotarchive::unpack(one).snapshot, snapshotarchive::unpack(other).snapshot);
            if (found.isEmpty())
                throw std::runtime_error("no differences");
        },
        [&] {
            for (const char *name : {"before", "after"}) {
                QSettings settings(folder.filePath(name), QSettings::IniFormat);
                benchmark::DoNotOptimize(settings.value("untitled/VALUE_1").toString());
            }
        },
        {.limit = 4});
}
BENCHMARK(compareSnapshots)->Apply(bench::applyPaired);

} // namespace

BENCHMARK_MAIN();
