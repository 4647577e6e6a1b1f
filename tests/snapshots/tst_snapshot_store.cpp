#include "changes/FileValues.h"
#include "snapshots/EditMerge.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotStore.h"
#include "support/FullDisk.h"
#include "support/OwnerOnly.h"
#include "support/TestTable.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Net = "[ untitled ]\r\nID=1\r\nNAME='a'\r\nPASSWORD=''\r\n# end\r\n";

} // namespace

/// A session with a snapshot in the place of a recorder.
class TestSnapshotStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keepsEditsBesideTheFetchedFiles();
    void startsOverWithTheSavedEdits();
    void keepsPristineCopiesFromNames();
    void keepsWhatAnotherProgramHasSaved();
    void keepsNothingOfWhatIsTakenBack();
    void keepsEditsOfFilesThatWereLeftOut();
    void leavesSecretsOut_data();
    void leavesSecretsOut();
    void leavesFilesOutWhoseSecretsCannotBeTold();
    void keepsNoUserWithoutAPassword_data();
    void keepsNoUserWithoutAPassword();
    void tellsOfAFullDiskAndSavesLater();
    void keepsTheOtherEditsWhenSecretsCannotBeLeftOut();
    void refusesWhatIsNoSnapshot();
    void mergesNoValuesOfOtherEntries_data();
    void mergesNoValuesOfOtherEntries();
    void mergesThreeSides_data();
    void mergesThreeSides();

private:
    /// Opens the snapshot, makes these edits and saves.
    QStringList edit(const QStringList &edits, bool keepsSecrets = false) const;
    Snapshot read() const { return snapshotarchive::read(m_path).snapshot; }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void TestSnapshotStore::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->filePath("snapshot.zip");
    Snapshot snapshot;
    snapshot.info.recorder = "recorder:5050";
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    snapshot.info.leftOut = QStringList{"users/untitled/PASSWD0", "state"};
    snapshot.files = {
        {"net", Net}, {"users", "NAME0='admin'\r\nPASSWD0=''\r\n"}, {"interface", "<pvsetup/>"}};
    QCOMPARE(snapshotarchive::write(snapshot, m_path), "");
}

QStringList TestSnapshotStore::edit(const QStringList &edits, bool keepsSecrets) const
{
    SnapshotStore store(m_path);
    store.setKeepsSecrets(keepsSecrets);
    QStringList messages;
    connect(&store, &OrbSetup::pseudothrow, &store, [&](const QString &text) { messages << text; });
    store.load();
    for (const QString &edit : edits)
        store.setValue(edit);
    store.function("save_settings", "");
    return messages;
}

void TestSnapshotStore::keepsEditsBesideTheFetchedFiles()
{
    const Snapshot before = read();
    QCOMPARE(edit({"net/untitled/ID/2", "net/new/OTHER/x"}), QStringList());
    const Snapshot saved = read();
    QCOMPARE(saved.files, before.files);
    QCOMPARE(saved.edited.keys(), QStringList("net"));
    QVERIFY(saved.edited["net"].contains("# end") && saved.info.isEdited);
    QVERIFY(isForOwnerOnly(m_path));

    SnapshotStore store(m_path);
    const QSignalSpy loaded(&store, &OrbSetup::loadDone);
    store.load();
    QCOMPARE(loaded.size(), 1);
    QCOMPARE(store.value("net/untitled/ID"), "2");
    QCOMPARE(store.value("net/new/OTHER"), "x");
    QCOMPARE(store.value("net.original/untitled/ID"), "1");
    QCOMPARE(store.fetchedFiles(), QStringList({"general", "interface", "net", "state", "users"}));
    QVERIFY(store.address().startsWith("recorder – "));
}

void TestSnapshotStore::startsOverWithTheSavedEdits()
{
    const Snapshot before = read();
    SnapshotStore store(m_path);
    store.load();
    store.setValue("net/untitled/ID/2");
    store.function("save_settings", "");
    store.setValue("net/untitled/ID/3");
    store.setValue("net/untitled/NAME/b");
    store.load();
    QCOMPARE(store.value("net/untitled/ID"), "2");
    QCOMPARE(store.value("net/untitled/NAME"), "a");
    QCOMPARE(store.value("net.original/untitled/ID"), "1");
    QCOMPARE(store.value("users/untitled/NAME0"), "admin");
    store.function("save_settings", "");
    const Snapshot saved = read();
    QCOMPARE(saved.files, before.files);
    QCOMPARE(saved.edited.keys(), QStringList("net"));
    QCOMPARE(FileValues(saved.edited["net"]).value("untitled/ID"), "2");
    QCOMPARE(FileValues(saved.edited["net"]).value("untitled/NAME"), "a");
}

void TestSnapshotStore::keepsPristineCopiesFromNames()
{
    Snapshot snapshot = read();
    snapshot.info.leftOut << "net.original";
    snapshot.files["net.original"] = "[untitled]\nID=9\n";
    QCOMPARE(snapshotarchive::write(snapshot, m_path), "");
    SnapshotStore store(m_path);
    store.load();
    QCOMPARE(store.value("net.original/untitled/ID"), "1");
}

void TestSnapshotStore::keepsWhatAnotherProgramHasSaved()
{
    SnapshotStore store(m_path);
    store.load();
    edit({"net/untitled/ID/2"});
    const QString beside = m_folder->filePath("snapshot-2.zip");
    for (const QString name : {"b", "c"}) { // from then on the store saves there, without a message
        store.setValue("net/untitled/NAME/" + name);
        const QSignalSpy messages(&store, &OrbSetup::pseudothrow);
        store.store();
        QVERIFY(store.isSaved());
        QCOMPARE(messages.size(), name == "b");
        const Snapshot own = snapshotarchive::read(beside).snapshot;
        QCOMPARE(FileValues(own.edited["net"]).value("untitled/NAME"), name);
        QCOMPARE(FileValues(own.edited["net"]).value("untitled/ID"), "1");
    }
    QCOMPARE(FileValues(read().edited["net"]).value("untitled/ID"), "2");
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 2);
}

void TestSnapshotStore::keepsNothingOfWhatIsTakenBack()
{
    edit({"net/untitled/ID/2"});
    edit({"net/untitled/ID/1"});
    QVERIFY(read().edited.isEmpty());
}

void TestSnapshotStore::keepsEditsOfFilesThatWereLeftOut()
{
    const QStringList messages = edit({"state/door/OPEN/yes", "state/door/PASSWORD/geheim"});
    QVERIFY2(messages.join("").contains("state/door/PASSWORD"), qPrintable(messages.join("")));
    Snapshot saved = read();
    QCOMPARE(saved.edited.keys(), QStringList("state"));
    QVERIFY2(!saved.edited["state"].contains("geheim"), saved.edited["state"]);
    SnapshotStore store(m_path);
    store.load();
    QCOMPARE(store.value("state/door/OPEN"), "yes");
    // No address names such a key: it would set "state/door/A" to "B/1".
    saved.edited["state"] += "A/B=1\r\n";
    const auto merged = mergeEdits(saved, valuesOf({{"state", "[door]\r\nOPEN=no\r\n"}}));
    QCOMPARE(merged.size(), 1);
    QCOMPARE(merged[0].path, "state/door/OPEN");
    QVERIFY(merged[0].state == MergedEdit::State::Collides && !merged[0].isBeforeKnown);
}

void TestSnapshotStore::leavesSecretsOut_data()
{
    const TestTable<bool> row("areKept");
    row("usually", false);
    row("unless they are asked for", true);
}

void TestSnapshotStore::leavesSecretsOut()
{
    QFETCH(bool, areKept);
    const QStringList messages = edit(
        {"net/untitled/PASSWORD/geheim", "users/untitled/PASSWD0/geheim", "net/untitled/NAME/b"}, areKept);
    const Snapshot saved = read();
    QCOMPARE(FileValues(saved.edited["net"]).value("untitled/NAME"), "b");
    QCOMPARE(FileValues(saved.edited["net"]).value("untitled/PASSWORD"), areKept ? "geheim" : "");
    QCOMPARE(saved.edited.contains("users"), areKept);
    QCOMPARE(messages.join("").contains("net/untitled/PASSWORD, users/untitled/PASSWD0"), !areKept);
}

void TestSnapshotStore::leavesFilesOutWhoseSecretsCannotBeTold()
{
    Snapshot snapshot = read();
    snapshot.info.leftOut.removeAll("state");
    // They lengthen the text beyond any limit, so what they put where is not known.
    snapshot.files["state"] =
        "[door]\nOPEN=a\n" + QByteArray("#!s/a/aa{net/untitled/PASSWORD}/\n").repeated(30);
    QCOMPARE(snapshotarchive::write(snapshot, m_path), "");
    const QString messages = edit({"net/untitled/NAME/b", "state/door/OPEN/geheim"}).join("");
    const Snapshot saved = read();
    QCOMPARE(saved.edited.keys(), QStringList("net"));
    QVERIFY2(messages.contains("state/door/OPEN") && !messages.contains("NAME"), qPrintable(messages));
}

void TestSnapshotStore::keepsNoUserWithoutAPassword_data()
{
    const TestTable<QStringList, bool, QString> row("edits", "areSecretsKept", "users");
    const QStringList added{"CNT/3", "NAME2/dan", "PASSWD2/geheim", "LEVEL2/1"};
    const QStringList removed{"CNT/1", "NAME0/bob", "PASSWD0/", "LEVEL0/0", "NAME1/", "LEVEL1/"};
    row("added", added, false, "");
    row("added, with passwords", added, true, "3: ann= bob= dan=geheim");
    row("added without a password", QStringList{"CNT/3", "NAME2/dan", "LEVEL2/1"}, false,
        "3: ann= bob= dan=");
    row("renamed with a new one", QStringList{"NAME1/eve", "PASSWD1/geheim"}, false, "");
    row("removed", removed, false, "1: bob= = =");
}

/// Users count by position: their list is kept as it was edited, or not at all.
void TestSnapshotStore::keepsNoUserWithoutAPassword()
{
    QFETCH(QStringList, edits);
    QFETCH(bool, areSecretsKept);
    QFETCH(QString, users);
    Snapshot snapshot = read();
    snapshot.files["users"] =
        "CNT=2\nNAME0=ann\nPASSWD0=\nLEVEL0=2\nNAME1=bob\nPASSWD1=\nLEVEL1=0\nHOURS=5\n";
    snapshot.info.leftOut << "users/untitled/PASSWD1";
    QCOMPARE(snapshotarchive::write(snapshot, m_path), "");
    for (QString &edit : edits)
        edit.prepend("users/untitled/");
    const QString messages =
        edit(edits + QStringList{"users/untitled/HOURS/6", "net/untitled/NAME/b"}, areSecretsKept).join("");
    const Snapshot saved = read();
    QCOMPARE(FileValues(saved.edited["net"]).value("untitled/NAME"), "b");
    const FileValues values(saved.edited["users"]);
    QCOMPARE(values.value("untitled/HOURS"), "6");
    const auto value = [&](const QString &key) { return values.value("untitled/" + key).value_or(""); };
    QVERIFY2(messages.contains("lists are left out: users/untitled") == users.isEmpty(),
             qPrintable(messages));
    if (users.isEmpty()) {
        QCOMPARE(value("CNT"), "2");
        QVERIFY(!values.value("untitled/NAME2") && !values.value("untitled/PASSWD2"));
        QCOMPARE(value("NAME1"), "bob");
        return;
    }
    QStringList found;
    for (const QString number : {"0", "1", "2"})
        found << value("NAME" + number) + '=' + value("PASSWD" + number);
    QCOMPARE(value("CNT") + ": " + found.join(' '), users);
}

void TestSnapshotStore::tellsOfAFullDiskAndSavesLater()
{
    SKIP_WITHOUT_FULL_DISK();
    const Snapshot before = read();
    SnapshotStore store(m_path);
    store.load();
    store.setValue("net/untitled/ID/2");
    const QSignalSpy stored(&store, &OrbSetup::storeDone);
    const QSignalSpy messages(&store, &OrbSetup::pseudothrow);
    {
        const FullDisk full;
        store.store();
    }
    QVERIFY(!store.isSaved());
    QCOMPARE(stored.size(), 0);
    QCOMPARE(messages.size(), 1);
    QCOMPARE(read().edited, before.edited);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList("snapshot.zip"));
    store.store();
    QVERIFY(store.isSaved());
    QCOMPARE(stored.size(), 1);
    QCOMPARE(FileValues(read().edited["net"]).value("untitled/ID"), "2");
}

void TestSnapshotStore::keepsTheOtherEditsWhenSecretsCannotBeLeftOut()
{
    SKIP_WITHOUT_FULL_DISK();
    Snapshot large = read();
    large.files["net"] += QByteArray(64 * 1024, '#') + "\r\n";
    QCOMPARE(snapshotarchive::write(large, m_path), "");
    SnapshotStore store(m_path);
    store.load();
    store.setValue("net/untitled/NAME/b");
    store.setValue("net/untitled/PASSWORD/geheim");
    store.flush();
    QStringList messages;
    connect(&store, &OrbSetup::pseudothrow, &store, [&](const QString &text) { messages << text; });
    {
        const FullDisk full(16 * 1024); // there is room for the archive, which is packed
        store.store();
    }
    QVERIFY2(!store.isSaved() && messages.value(0).contains("no room to leave"),
             qPrintable(messages.join("")));
    QVERIFY(read().edited.isEmpty());
    store.store();
    QVERIFY(store.isSaved());
    QCOMPARE(FileValues(read().edited["net"]).value("untitled/NAME"), "b");
    QCOMPARE(FileValues(read().edited["net"]).value("untitled/PASSWORD"), "");
}

void TestSnapshotStore::refusesWhatIsNoSnapshot()
{
    for (const QByteArray &content : {QByteArray("PK"), QByteArray()}) {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        SnapshotStore store(m_path);
        QVERIFY(!store.problem().isEmpty());
        const QSignalSpy messages(&store, &OrbSetup::pseudothrow);
        store.load();
        QCOMPARE(messages.size(), 1);
    }
    QVERIFY(SnapshotStore(m_folder->filePath("none.zip")).problem().contains("none.zip"));
}

void TestSnapshotStore::mergesNoValuesOfOtherEntries_data()
{
    const TestTable<QByteArray, QByteArray, QStringList, QString> row("edited", "now", "leftOut", "merged");
    const QByteArray users = "CNT=3\nNAME0=ann\nLEVEL0=2\nNAME1=bob\nLEVEL1=0\nNAME2=carol\nLEVEL2=0\n";
    const QByteArray raised = QByteArray(users).replace("LEVEL1=0", "LEVEL1=1");
    const QByteArray withoutBob = "CNT=2\nNAME0=ann\nLEVEL0=2\nNAME1=carol\nLEVEL1=0\n";
    const QByteArray withDan = QByteArray(users).replace("CNT=3", "CNT=4") + "NAME3=dan\nLEVEL3=2\n";
    const QStringList passwords{"users/untitled/PASSWD1"};
    const QString moved = "CNT %1, LEVEL2 %1, NAME1 %1, NAME2 %1";
    row("the same users", raised, users, {}, "LEVEL1 fits");
    row("the same users, without passwords", raised, users, passwords, "LEVEL1 fits");
    // What was not edited is needed to make the list as it was edited.
    row("a user was removed", raised, withoutBob, {},
        "LEVEL1 with the list, CNT with the list, LEVEL2 with the list, NAME1 with the list, "
        "NAME2 with the list");
    row("a user was added", raised, withDan, {},
        "LEVEL1 with the list, CNT with the list, LEVEL3 with the list, NAME3 with the list");
    row("a user was removed, without passwords", raised, withoutBob, passwords, "LEVEL1 never");
    row("the edit removes one", withoutBob, users, {}, moved.arg("with the list"));
    row("the edit removes one, without passwords", withoutBob, users, passwords, moved.arg("never"));
    row("the edit removes one, without the file", withoutBob, users, {"users"}, moved.arg("never"));
    // The list that nobody edited stays as the recorder has it.
    row("another value", users + "HOURS=6\n", withoutBob, {}, "HOURS fits");
    row("a described list", QByteArray(raised).replace("CNT", "ROWS"),
        QByteArray(withoutBob).replace("CNT", "ROWS"), passwords, "LEVEL1 never");
    row("no list", QByteArray(raised).replace("CNT=3\n", ""), QByteArray(withoutBob).replace("CNT=2\n", ""),
        {}, "LEVEL1 fits");
}

void TestSnapshotStore::mergesNoValuesOfOtherEntries()
{
    QFETCH(QByteArray, edited);
    QFETCH(QByteArray, now);
    QFETCH(QStringList, leftOut);
    Snapshot snapshot;
    snapshot.files = {{"users", "CNT=3\nNAME0=ann\nLEVEL0=2\nNAME1=bob\nLEVEL1=0\nNAME2=carol\nLEVEL2=0\n"}};
    snapshot.files["interface"] = "<interface><item><row_count>users/untitled/ROWS</row_count>"
                                  "<column_source>users/untitled/NAME</column_source>"
                                  "<column_source>users/untitled/LEVEL</column_source></item></interface>";
    if (!edited.contains("CNT"))
        snapshot.files["users"].replace("CNT=3\n", edited.contains("ROWS") ? "ROWS=3\n" : "");
    snapshot.edited = {{"users", edited}};
    snapshot.info.leftOut = leftOut;
    QStringList merged;
    for (const MergedEdit &edit : mergeEdits(snapshot, valuesOf({{"users", now}}))) {
        QCOMPARE(edit.movedList, edit.state == MergedEdit::State::Fits ? "" : "users/untitled");
        merged << edit.path.section('/', 2) + (edit.state == MergedEdit::State::Fits ? " fits"
                                               : edit.canBeTaken                     ? " with the list"
                                                                                     : " never");
    }
    QTEST(merged.join(", "), "merged");
}

void TestSnapshotStore::mergesThreeSides_data()
{
    const TestTable<QByteArray, QString> row("now", "merged");
    row("as it was", "ID=1\r\nPIN=''\r\n", "PIN fits, ID fits");
    row("as edited", "ID=2\r\nPIN='5'\r\n", "PIN done, ID done");
    row("changed too", "ID=3\r\nPIN='4'\r\n", "PIN collides, ID collides");
    row("gone", "NAME=1\r\n", "PIN collides, ID collides");
    row("another file", "", "PIN none, ID none");
}

void TestSnapshotStore::mergesThreeSides()
{
    QFETCH(QByteArray, now);
    const auto merged = [&now](const QStringList &leftOut) {
        Snapshot snapshot;
        snapshot.info.leftOut = leftOut;
        snapshot.files = {{"net", "ID=1\r\nPIN=''\r\nNAME=x\r\n"}};
        snapshot.edited = {{"net", "ID=2\r\nPIN='5'\r\nNAME=x\r\n"}};
        QStringList texts;
        const FileContents recorder = now.isEmpty() ? FileContents() : FileContents{{"net", now}};
        for (const MergedEdit &edit : mergeEdits(snapshot, valuesOf(recorder)))
            texts.prepend(edit.path.section('/', 2) + ' ' +
                          QStringList{"fits", "collides", "done", "none"}[int(edit.state)]);
        return texts.join(", ");
    };
    QTEST(merged({}), "merged");
    // What the recorder had is not known, so that nothing tells that it fits.
    QCOMPARE(merged({"net/untitled/PIN"}).contains("PIN fits"), false);
}

QTEST_GUILESS_MAIN(TestSnapshotStore)
#include "tst_snapshot_store.moc"
