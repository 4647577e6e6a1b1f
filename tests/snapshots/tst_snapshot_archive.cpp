#include "snapshots/SecretRemoval.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotDifferences.h"
#include "support/TestTable.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

#include <archive.h>
#include <archive_entry.h>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

using namespace paravue;
using paravue::test::TestTable;

namespace
{

using Entries = QList<std::pair<QByteArray, QByteArray>>;

/// A zip archive of any entries; a name that ends in "/" is a folder.
/// The content of the last one comes \a repeats times.
QByteArray zipOf(const Entries &entries, int repeats = 1)
{
    QByteArray bytes;
    archive *writer = archive_write_new();
    archive_write_set_format_zip(writer);
    archive_write_set_bytes_in_last_block(writer, 1);
    const auto append = [](archive *, void *target, const void *block, size_t size) {
        static_cast<QByteArray *>(target)->append(static_cast<const char *>(block), qsizetype(size));
        return la_ssize_t(size);
    };
    archive_write_open(writer, &bytes, nullptr, append, nullptr);
    for (const auto &[name, content] : entries) {
        archive_entry *entry = archive_entry_new();
        archive_entry_set_pathname(entry, name.constData());
        archive_entry_set_filetype(entry, name.endsWith('/') ? AE_IFDIR : AE_IFREG);
        archive_entry_set_perm(entry, 0600);
        const int times = &content == &entries.constLast().second ? repeats : 1;
        archive_entry_set_size(entry, content.size() * times);
        archive_write_header(writer, entry);
        for (int i = 0; i < times; ++i)
            archive_write_data(writer, content.constData(), size_t(content.size()));
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    return bytes;
}

Entries entriesOf(const QByteArray &zip)
{
    Entries entries;
    archive *reader = archive_read_new();
    archive_read_support_format_zip(reader);
    archive_read_open_memory(reader, zip.constData(), size_t(zip.size()));
    archive_entry *entry = nullptr;
    while (archive_read_next_header(reader, &entry) == ARCHIVE_OK) {
        QByteArray content(qsizetype(archive_entry_size(entry)), 0);
        archive_read_data(reader, content.data(), size_t(content.size()));
        entries.append({archive_entry_pathname(entry), content});
    }
    archive_read_free(reader);
    return entries;
}

Snapshot example()
{
    Snapshot snapshot;
    snapshot.info.recorder = "recorder.example.net:5050";
    snapshot.info.model = "R4";
    snapshot.info.firmware = "4.2";
    snapshot.info.time = QDateTime::fromString("2024-05-01T11:58:02.125Z", Qt::ISODateWithMs);
    snapshot.info.leftOut = QStringList{"net/untitled/PASSWORD"};
    snapshot.files = {{"interface", "<interface/>"}, {"net", "[ untitled ]\r\nID=1\r\n"}, {"empty", ""}};
    return snapshot;
}

/// The entries of a good archive, where \a change was applied to the manifest.
template <typename Change>
QByteArray withManifest(Change change)
{
    Entries entries = entriesOf(snapshotarchive::pack(example()).bytes);
    QJsonObject manifest = QJsonDocument::fromJson(entries.first().second).object();
    change(manifest);
    entries.first().second = QJsonDocument(manifest).toJson();
    return zipOf(entries);
}

QByteArray with(const char *member, const QJsonValue &value)
{
    return withManifest([&](QJsonObject &manifest) { manifest[QLatin1StringView(member)] = value; });
}

/// An archive whose manifest lists the entry \a name as well, with \a size.
QByteArray listing(const QString &name, double size, const QByteArray &content = {}, int repeats = 1)
{
    Entries entries = entriesOf(withManifest([&](QJsonObject &manifest) {
        QJsonObject files = manifest["files"].toObject();
        QJsonObject file = files["files/empty"].toObject();
        file["size"] = size;
        files[name] = file;
        manifest["files"] = files;
    }));
    entries.append({name.toUtf8(), content});
    return zipOf(entries, repeats);
}

/// Of this process so far, in KiB; 0 where that is not known.
long largestMemory()
{
#ifdef Q_OS_LINUX
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
#else
    return 0;
#endif
}

QByteArray withEntry(const QByteArray &name, const QByteArray &content = {})
{
    Entries entries = entriesOf(snapshotarchive::pack(example()).bytes);
    entries.append({name, content});
    return zipOf(entries);
}

} // namespace

/// What is written into snapshots and read from them.
class TestSnapshotArchive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // First, as the largest memory of the process counts.
    void takesNoMemoryForWhatUnpacksToMore();
    void readsWhatItHasWritten();
    void keepsNamesPlain_data();
    void keepsNamesPlain();
    void refuses_data();
    void refuses();
    void refusesEveryTruncation();
    void refusesToPackTooMuch();
    void leavesOutSecrets_data();
    void leavesOutSecrets();
    void leavesOutWhatGrowsWithoutEnd();
    void listsDifferences();
    void namesMisfits_data();
    void namesMisfits();
    void namesRecorders_data();
    void namesRecorders();
};

/// Half a mebibyte that unpacks to 400, behind a list that tells of one byte.
void TestSnapshotArchive::takesNoMemoryForWhatUnpacksToMore()
{
    constexpr int Blocks = 400;
    const QByteArray bomb = listing("files/more", 1, QByteArray(1024 * 1024, 0), Blocks);
    QVERIFY(bomb.size() < 1024 * 1024);
    const long before = largestMemory();
    QVERIFY(snapshotarchive::unpack(bomb).problem.contains("damaged"));
    QVERIFY(largestMemory() - before < 50 * 1024);
}

void TestSnapshotArchive::readsWhatItHasWritten()
{
    Snapshot written = example();
    written.edited = {{"net", "[ untitled ]\r\nID=2\r\n"}};
    written.files.insert("odd \u00fc?*", "x");
    written.info.isEdited = true;
    const auto packed = snapshotarchive::pack(written);
    QCOMPARE(packed.problem, "");
    const auto read = snapshotarchive::unpack(packed.bytes);
    QCOMPARE(read.problem, "");
    QVERIFY(read.snapshot.info == written.info);
    QCOMPARE(read.snapshot.files, written.files);
    QCOMPARE(read.snapshot.edited, written.edited);
    QCOMPARE(read.snapshot.currentFiles().value("net"), "[ untitled ]\r\nID=2\r\n");
    QVERIFY(snapshotarchive::unpackInfo(packed.bytes).snapshot.info == written.info);
    static const QRegularExpression plain("^(manifest.json|(files|edited)/[A-Za-z0-9%]+)$");
    for (const auto &[name, content] : entriesOf(packed.bytes))
        QVERIFY2(plain.match(name).hasMatch(), name);
}

void TestSnapshotArchive::keepsNamesPlain_data()
{
    const TestTable<QString, bool> row("name", "isPlain");
    row("usual", "timers", true);
    row("with a dot", "net.d", true);
    row("pristine copy", "net.original", false);
    row("with blanks", "a b", true);
    row("empty", "", false);
    row("folder above", "..", false);
    row("folder itself", ".", false);
    row("folder", "a/b", false);
    row("folder on Windows", "a\\b", false);
    row("drive", "c:net", false);
    row("end of a text", QString(QChar(0)), false);
    row("line end", "a\n", false);
    row("no Unicode", QString(QChar::ReplacementCharacter), false);
    row("too long", QString(101, 'a'), false);
}

void TestSnapshotArchive::keepsNamesPlain()
{
    QFETCH(QString, name);
    QFETCH(bool, isPlain);
    Snapshot snapshot = example();
    snapshot.files.insert(name, "x");
    const auto read = snapshotarchive::unpack(snapshotarchive::pack(snapshot).bytes);
    QCOMPARE(read.problem, "");
    QCOMPARE(read.snapshot.files.contains(name), isPlain);
    QCOMPARE(read.snapshot.info.leftOut.contains(name), !isPlain);
    const QString entry = "files/" + QString::fromLatin1(QUrl::toPercentEncoding(name));
    QCOMPARE(snapshotarchive::unpack(listing(entry, 0)).problem.isEmpty(), isPlain);
}

void TestSnapshotArchive::refuses_data()
{
    const QString foreign = "no snapshot";
    const QString damaged = "damaged";
    const QString wrongName = "wrong name";
    const QString tooLarge = "larger than";
    const TestTable<QByteArray, QString> row("archive", "problem");
    row("empty file", "", foreign);
    row("text", "[ untitled ]\r\nID=1\r\n", foreign);
    row("another zip", zipOf({{"readme.txt", "x"}}), foreign);
    row("empty zip", zipOf({}), foreign);
    row("manifest not first", zipOf({{"files/net", "x"}, {"manifest.json", "{}"}}), foreign);
    row("manifest is a folder", zipOf({{"manifest.json/", ""}}), foreign);
    row("manifest is no JSON", zipOf({{"manifest.json", "{"}}), damaged);
    row("manifest is deep", zipOf({{"manifest.json", QByteArray(100'000, '[')}}), damaged);
    row("another format", with("format", "backup"), foreign);
    row("no format", with("format", QJsonValue()), foreign);
    row("future version", with("version", 2), "newer version");
    row("no version", with("version", "1"), damaged);
    row("no time", with("time", "yesterday"), damaged);
    row("no list of what was left out", with("leftOut", 1), damaged);
    row("no list of files", with("files", 1), damaged);
    row("no checksum", with("files", QJsonObject{{"files/net", QJsonObject{{"size", 1}}}}), damaged);
    row("negative size", listing("files/more", -1), damaged);
    row("huge size", listing("files/more", 1e300), damaged);
    row("gigabytes", listing("files/more", 3e9), tooLarge);
    row("not all files", withManifest([](QJsonObject &manifest) {
            QJsonObject files = manifest["files"].toObject();
            files["files/more"] = files["files/empty"];
            manifest["files"] = files;
        }),
        damaged);
    row("file that is not listed", withEntry("files/more"), wrongName);
    row("climbs out", withEntry("../net"), wrongName);
    row("climbs out within", withEntry("files/../../net"), wrongName);
    row("root", withEntry("/etc/net"), wrongName);
    row("drive", withEntry("C:\\net"), wrongName);
    row("twice", withEntry("files/net", "[ untitled ]\r\nID=1\r\n"), wrongName);
    row("listed, climbs out", listing("../net", 0), wrongName);
    row("listed, climbs out when decoded", listing("files/%2e%2e%2fnet", 0), wrongName);
    row("listed in no folder", listing("net", 0), wrongName);
    row("longer than listed", listing("files/more", 1, "xy"), damaged);
    row("shorter than listed", listing("files/more", 3, "xy"), damaged);
    row("checksum", listing("files/more", 2, "xy"), "checksum");
}

void TestSnapshotArchive::refuses()
{
    QFETCH(QByteArray, archive);
    QFETCH(QString, problem);
    const auto read = snapshotarchive::unpack(archive);
    QVERIFY2(read.problem.contains(problem), qPrintable(read.problem));
    QVERIFY(read.snapshot.files.isEmpty() && read.snapshot.edited.isEmpty());
    QVERIFY(read.snapshot.info == SnapshotInfo());
}

void TestSnapshotArchive::refusesEveryTruncation()
{
    const QByteArray whole = snapshotarchive::pack(example()).bytes;
    qsizetype used = 0;
    for (qsizetype size = 0; size < whole.size(); ++size) {
        const auto read = snapshotarchive::unpack(whole.first(size));
        // Without the list at the end of the archive all files may still be there, and they are checked.
        if (read.problem.isEmpty())
            QCOMPARE(read.snapshot.files, example().files);
        else
            QVERIFY(read.snapshot.files.isEmpty());
        used += read.problem.isEmpty();
    }
    QVERIFY(used < whole.size() / 2);
    for (qsizetype at = 0; at < whole.size(); at += 5) {
        QByteArray flipped = whole;
        flipped[at] = char(flipped[at] ^ 0x10);
        const auto read = snapshotarchive::unpack(flipped);
        QVERIFY(!read.problem.isEmpty() || read.snapshot.files == example().files);
    }
}

void TestSnapshotArchive::refusesToPackTooMuch()
{
    Snapshot snapshot = example();
    snapshot.files.insert("large", QByteArray(snapshotarchive::MaxUnpackedBytes, 0));
    QVERIFY(!snapshotarchive::pack(snapshot).problem.isEmpty());
}

void TestSnapshotArchive::leavesOutSecrets_data()
{
    const TestTable<QByteArray, QByteArray, QStringList> row("net", "kept", "leftOut");
    row("none", "ID=1\r\n", "ID=1\r\n", {});
    row("password", "ID=1\r\nPASSWORD='geheim'\r\nA=2", "ID=1\r\nPASSWORD=''\r\nA=2",
        {"net/untitled/PASSWORD"});
    row("in a section", "[ snmp ]\nread_community = \"geheim\"\n", "[ snmp ]\nread_community =''\n",
        {"net/snmp/read_community"});
    row("on the last line", "PSK_KEY=geheim", "PSK_KEY=''", {});
    row("empty already", "PASSWORD=''\r\n", "PASSWORD=''\r\n", {});
    row("odd quotes", "PASSWORD='gehe'im'\r\n", "PASSWORD=''\r\n", {});
    row("commented out", "; PASSWORD=geheim\r\n# TOKEN = geheim\r\n", "; PASSWORD=''\r\n# TOKEN =''\r\n", {});
    row("name with a sign", "PSK=KEY=geheim\r\nA=B=C\r\n", "PSK=KEY=''\r\nA=B=C\r\n",
        {"net/untitled/PSK=KEY"});
    row("in an address", "URL=http://host/?token=geheim\r\n", "URL=http://host/?token=''\r\n",
        {"net/untitled/URL=http://host/?token"});
    row("no directive", "#! PASSWORD=geheim\r\n", "#! PASSWORD=''\r\n", {});
    row("twice", "PASSWORD=geheim\r\nPASSWORD=geheim2\r\n", "PASSWORD=''\r\nPASSWORD=''\r\n",
        {"net/untitled/PASSWORD"});
    row("marked", "[ a ]\r\nPIN=geheim\r\n", "[ a ]\r\nPIN=''\r\n", {"net/a/PIN"});
    row("marked otherwise", "[ a ]\r\nCODE=geheim\r\n", "[ a ]\r\nCODE=''\r\n", {"net/a/CODE"});
    row("bytes that are no Unicode", "NAME='\xff'\r\nPASSWORD=geheim\r\n", "NAME='\xff'\r\nPASSWORD=''\r\n",
        {"net/untitled/PASSWORD"});
    row("marked by the description", "[ a ]\r\nSEED='geheim'\r\nSERIAL='geheim'\r\n",
        "[ a ]\r\nSEED=''\r\nSERIAL=''\r\n", {"net/a/SEED", "net/a/SERIAL"});
    row("by a directive",
        "A=1\r\nWLAN='geheim'\r\n#!s/WLAN='[^{}']*'(?=\r)/WLAN='{other/untitled/WLAN_KEY}'/\r\n",
        "A=1\r\nWLAN=''\r\n#!s/WLAN='[^{}']*'(?=\r)/WLAN='{other/untitled/WLAN_KEY}'/\r\n",
        {"net/untitled/WLAN"});
    row("by the directive of an older session",
        "WLAN='other-secret'\r\n#!s/WLAN='[^{}']*'(?=\r)/WLAN='{other/untitled/WLAN_KEY}'/\r\n",
        "WLAN=''\r\n#!s/WLAN='[^{}']*'(?=\r)/WLAN='{other/untitled/WLAN_KEY}'/\r\n", {"net/untitled/WLAN"});
    row("where the directive does not fit any more",
        "psk geheim end\r\n#!s/psk [0-9]+/psk {other/untitled/WLAN_KEY}/\r\n",
        "psk  end\r\n#!s/psk [0-9]+/psk {other/untitled/WLAN_KEY}/\r\n", {});
    row("directive of no secret", "N=old\r\n#!s/N=[a-z]*/N={other/untitled/ID}/\r\n",
        "N=old\r\n#!s/N=[a-z]*/N={other/untitled/ID}/\r\n", {});
}

void TestSnapshotArchive::leavesOutSecrets()
{
    QFETCH(QByteArray, net);
    const QByteArray description =
        "<interface><item type='edit' password='on'><text>PIN</text><key>net/a/PIN/1</key>"
        "</item><item type='combobox' secret='yes'><text>A<key>net/a/CODE</key></text></item><item "
        "password='off'><key>net/untitled/ID</key></item>"
        "<item secret='yes'><text>A<key>net/a/SEED/1</key></text></item>"
        "<item secret='yes'><value>net/a/SERIAL</value></item>"
        "<password>kept</password></interface>";
    FileContents files{{"net", net}, {"other", "WLAN_KEY='geheim'\r\nID=5\r\n"}, {"interface", description}};
    QStringList leftOut = removeSecrets(files);
    QTEST(files.value("net"), "kept");
    QVERIFY(leftOut.removeOne("other/untitled/WLAN_KEY"));
    QTEST(leftOut, "leftOut");
    QCOMPARE(files.value("interface"), description);
    for (const QByteArray &content : files)
        QVERIFY(!content.contains("geheim"));
}

void TestSnapshotArchive::leavesOutWhatGrowsWithoutEnd()
{
    // Each application doubles the letters that the next one replaces.
    QByteArray state = "a\r\n";
    for (int i = 0; i < 12; ++i)
        state += "#!s/a/aa{other/untitled/WLAN_KEY}/\r\n";
    FileContents files{{"state", state}, {"other", "WLAN_KEY='geheim'\r\n"}};
    QCOMPARE(removeSecrets(files), QStringList({"other/untitled/WLAN_KEY", "state"}));
    QCOMPARE(files.keys(), QStringList("other"));

    // A store keeps every key with the name of its section.
    files.insert("long",
                 '[' + QByteArray(16 << 10, 's') + "]\r\n" + QByteArray("A=1\r\n").repeated(16 << 10));
    QCOMPARE(removeSecrets(files), QStringList("long"));
    QCOMPARE(files.keys(), QStringList("other"));
}

void TestSnapshotArchive::listsDifferences()
{
    Snapshot before = example();
    before.files = {{"net", "ID=1\r\nNAME=a\r\nPASSWORD=''\r\nGONE=1\r\n[ s ]\r\nX='1'\r\n"},
                    {"time", "YYYYMMDDHHMMSS=1\r\n"},
                    {"state", "A=1\r\n"},
                    {"old", "A=1\r\n"},
                    {"interface", "a=1\r\n"}};
    Snapshot after = before;
    after.info.leftOut = QStringList{"state"};
    after.files = {{"net", "NAME=b\r\nID='1'\r\nPASSWORD=secret\r\nNEW=\r\n[ s ]\r\nX=2\r\n"},
                   {"time", "YYYYMMDDHHMMSS=2\r\n"},
                   {"state", "A=2\r\n"},
                   {"interface", "a=2\r\n"}};
    QStringList texts;
    for (const ValueDifference &difference : differences(before, after)) {
        texts << difference.path + ' ' + difference.before.value_or("none") + ' ' +
                     difference.after.value_or("none");
    }
    QCOMPARE(texts, QStringList({"net/s/X 1 2", "net/untitled/GONE 1 none", "net/untitled/NAME a b",
                                 "net/untitled/NEW none "}));
}

void TestSnapshotArchive::namesMisfits_data()
{
    const TestTable<QString, QString, QString> row("model", "firmware", "problem");
    row("the same", "R4", "4.2", "");
    row("not known", "", "", "");
    row("another model", "P16", "4.2", "\"R4\", and this recorder is a \"P16\"");
    row("another firmware", "R4", "4.3", "firmware 4.2, and this recorder has firmware 4.3");
}

void TestSnapshotArchive::namesMisfits()
{
    QFETCH(QString, problem);
    QFETCH(QString, model);
    QFETCH(QString, firmware);
    SnapshotInfo recorder;
    recorder.model = model;
    recorder.firmware = firmware;
    const QString found = misfit(example().info, recorder);
    QVERIFY2(problem.isEmpty() ? found.isEmpty() : found.contains(problem), qPrintable(found));
}

void TestSnapshotArchive::namesRecorders_data()
{
    const TestTable<QString, QString> row("address", "recorder");
    row("host", "recorder", "recorder");
    row("login", "admin:x@Recorder.example.net", "recorder.example.net");
    row("login with @", "admin:x@y@recorder", "recorder");
    row("usual port", "a:b@recorder:5049", "recorder");
    row("port", "a:b@recorder:5050", "recorder:5050");
    row("signed port", "a:b@recorder:-25536", "recorder:40000");
    row("no address", "", "");
}

void TestSnapshotArchive::namesRecorders()
{
    QFETCH(QString, address);
    QTEST(recorderOfAddress(address), "recorder");
}

QTEST_GUILESS_MAIN(TestSnapshotArchive)
#include "tst_snapshot_archive.moc"
