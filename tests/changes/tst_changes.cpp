#include "changes/ChangeList.h"
#include "changes/DescribedSecrets.h"
#include "changes/PositionLists.h"
#include "changes/SaveCheck.h"
#include "changes/ShownValue.h"
#include "changes/StateDirectives.h"
#include "support/StoreFixture.h"
#include "support/TestTable.h"

#include <QSignalSpy>
#include <QStringEncoder>
#include <QTemporaryDir>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Net = "ID=old\r\n# [ a ]\r\nPASSWORD=x\r\nNAME=\"it's\"\r\n";

/// A file "net" with its pristine copy, and a local one without.
struct Session : StoreFixture {
    Session() : StoreFixture({{"net", Net}, {"net.original", Net}, {"alone", "A=1\r\n"}, {"tmp", ""}}) {}

    /// "path: old -> new" for each change.
    QStringList texts() const
    {
        QStringList texts;
        for (const Change &change : list.all()) {
            texts << change.path + ": " + shownValue(change.oldValue, change.isSecret) + " -> " +
                         shownValue(change.newValue, change.isSecret);
        }
        return texts;
    }

    ChangeList list{store()};
};

/// A store of a recorder whose second fetch has left copies that cannot be read.
struct UnreadableReader : OrbSetup {
    explicit UnreadableReader(const QString &folder)
    {
        setReading(
            [folder](const auto &) {
                auto reader = std::make_unique<OrbSetup>();
                for (const char *name : {"net", "net.original"})
                    reader->setFilePath(name, folder + "/none");
                return reader;
            },
            [](const QString &, const QByteArray &) { return false; });
    }
};

/// A store of a recorder that has other files by now, which a save can be compared with.
class ComparedStore : public OrbSetup
{
public:
    ComparedStore(const QMap<QString, QByteArray> &before, const QMap<QString, QByteArray> &now)
        : m_recorder(now)
    {
        setProperty("offline", true);
        for (auto file = before.cbegin(); file != before.cend(); ++file)
            take(file.key(), *file);
        setReading(
            [this](const auto &) {
                auto reader = std::make_unique<OrbSetup>();
                reader->setProperty("offline", true);
                for (const QString &name : fetchedFiles()) {
                    for (const char *suffix : {"", ".original"})
                        reader->setFilePath(name + suffix, m_recorder.store().filePath(name));
                }
                return reader;
            },
            [this](const QString &name, const QByteArray &content) { return take(name, content); });
    }
    ~ComparedStore() override { m_settings.clear(); } // writes its files

    QByteArray pristine(const QString &name) { return m_files.content(name + ".original"); }

private:
    bool take(const QString &name, const QByteArray &content)
    {
        for (const QString &copy : {name, name + ".original"}) {
            m_files.setFile(copy, content);
            setFilePath(copy, m_files.store().filePath(copy));
        }
        return true;
    }

    StoreFixture m_recorder;
    StoreFixture m_files{{}};
};

} // namespace

/// The list of what was changed since the files were fetched.
class TestChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comparesWithTheRecorder_data();
    void comparesWithTheRecorder();
    void leavesNoTraceOfWhatIsTakenBack();
    void startsOverWithAFetchedFile();
    void findsEarlierEdits();
    void goesOnFromWhatWasSent();
    void doubtsWhatWasNotAnswered_data();
    void doubtsWhatWasNotAnswered();
    void knowsListsByTheirPositions_data();
    void knowsListsByTheirPositions();
    void asksAboutListsThatOthersHaveChanged_data();
    void asksAboutListsThatOthersHaveChanged();
    void followsTheDirectivesOfStateFiles();
    void stopsDirectivesThatRunAway_data();
    void stopsDirectivesThatRunAway();
    void hidesStatesWithSecrets_data();
    void hidesStatesWithSecrets();
    void takesNoUnreadableCopyForTheRecorders();
    void hidesSecrets_data();
    void hidesSecrets();
    void readsDescribedSecrets_data();
    void readsDescribedSecrets();
};

void TestChanges::comparesWithTheRecorder_data()
{
    const TestTable<QStringList, QStringList> row("edits", "changes");
    row("nothing", {}, {});
    row("a value", {"net/untitled/ID/new"}, {"net/untitled/ID: old -> new"});
    row("back again", {"net/untitled/ID/new", "net/untitled/ID/old"}, {});
    row("the same value", {"net/untitled/NAME/it's"}, {});
    row("twice", {"net/untitled/ID/1", "net/untitled/ID/2"}, {"net/untitled/ID: old -> 2"});
    row("slashes", {"net/untitled/ID/a/b"}, {"net/untitled/ID: old -> a/b"});
    row("emptied", {"net/untitled/ID/"}, {"net/untitled/ID: old -> –"});
    row("new key", {"net/untitled/NEW/1"}, {"net/untitled/NEW: (none) -> 1"});
    row("new empty key", {"net/untitled/NEW/"}, {"net/untitled/NEW: (none) -> –"});
    row("without a pristine copy", {"alone/untitled/A/2"}, {"alone/untitled/A: 1 -> 2"});
    row("in order", {"net/untitled/NAME/n", "alone/untitled/A/2"},
        {"alone/untitled/A: 1 -> 2", "net/untitled/NAME: it's -> n"});
    row("never sent", {"tmp/untitled/A/1", "general/network/login/x", "net.original/untitled/ID/x"}, {});
}

void TestChanges::comparesWithTheRecorder()
{
    QFETCH(QStringList, edits);
    Session session;
    const QSignalSpy heard(&session.list, &ChangeList::changed);
    for (const QString &edit : edits)
        session.store().setValue(edit);
    QTEST(session.texts(), "changes");
    session.store().flush();
    QTEST(session.texts(), "changes");
    QCOMPARE(heard.isEmpty(), edits.isEmpty() || QTest::currentDataTag() == QByteArray("the same value") ||
                                  QTest::currentDataTag() == QByteArray("never sent"));
}

void TestChanges::leavesNoTraceOfWhatIsTakenBack()
{
    Session session;
    for (const char *edit : {"net/untitled/ID/1", "net/untitled/NEW/1", "net/untitled/ID/2"})
        session.store().setValue(edit);
    for (const Change &change : session.list.all())
        session.list.takeBack(change.path);
    QVERIFY(session.list.isEmpty());
    QCOMPARE(session.store().value("net/untitled/ID"), "old");
    QCOMPARE(session.store().value("net/untitled/NEW/none"), "none");
    QCOMPARE(session.store().regexp_values("net/untitled/.*").size(), 3);
    session.store().setValue("net/untitled/NEW/2");
    session.store().flush();
    session.list.takeBack("net/untitled/NEW");
    session.store().flush();
    QCOMPARE(session.store().value("net/untitled/NEW/none"), ""); // the file holds the key now
}

void TestChanges::startsOverWithAFetchedFile()
{
    Session session;
    session.store().setValue("net/untitled/ID/new");
    session.store().setValue("alone/untitled/A/2");
    const QSignalSpy dropped(&session.list, &ChangeList::dropped);
    session.setFile("net", "ID=fetched\r\n");
    session.setFile("net.original", "ID=fetched\r\n");
    QCOMPARE(session.texts(), QStringList("alone/untitled/A: 1 -> 2"));
    QCOMPARE(dropped.size(), 1);
    session.store().setValue("net/untitled/ID/new");
    QCOMPARE(session.texts().value(1), "net/untitled/ID: fetched -> new");
}

void TestChanges::findsEarlierEdits()
{
    const QByteArray other = "A=1\n";
    StoreFixture fixture({{"net", Net},
                          {"net.original", Net},
                          {"other", other},
                          {"other.original", other},
                          {"local", "A=1\nB=1\n"},
                          {"unused", other}});
    for (const char *edit : {"net/untitled/ID/new", "net/untitled/NEW/1", "other/untitled/A/2",
                             "local/untitled/A/2", "local/untitled/NEW/1"})
        fixture.store().setValue(edit);
    ChangeList list(fixture.store());
    fixture.store().setFilePath("other", fixture.store().filePath("other")); // as a fetch does
    fixture.store().setValue("net/untitled/NAME/n");
    list.addEarlierEdits();
    QStringList paths;
    for (const Change &change : list.all())
        paths << change.path;
    QCOMPARE(paths, QStringList({"local/untitled/A", "local/untitled/NEW", "net/untitled/ID",
                                 "net/untitled/NAME", "net/untitled/NEW"}));
    QCOMPARE(list.find("local/untitled/A")->oldValue, "1");
    QCOMPARE(fixture.store().fetchedFiles(), QStringList({"net", "other"}));
    QCOMPARE(list.find("net/untitled/ID")->oldValue, "old");
}

void TestChanges::goesOnFromWhatWasSent()
{
    Session session;
    session.store().setValue("net/untitled/ID/sent");
    session.store().setValue("net/untitled/NAME/sent");
    const QList<Change> sent = session.list.all();
    session.store().setValue("net/untitled/ID/later");
    session.list.takeBack("net/untitled/NAME");
    session.list.accept(sent);
    QCOMPARE(session.texts(),
             QStringList({"net/untitled/ID: sent -> later", "net/untitled/NAME: sent -> it's"}));
    session.list.takeBack("net/untitled/ID");
    QCOMPARE(session.store().value("net/untitled/ID"), "sent");
}

void TestChanges::doubtsWhatWasNotAnswered_data()
{
    const TestTable<QStringList, QString, QStringList> row("steps", "answer", "changes");
    const QString edited = "net/untitled/ID: old -> new";
    row("edited still", {}, "", {edited});
    row("taken back", {"net/untitled/ID/old"}, "", {"net/untitled/ID: new -> old"});
    row("taken back and made again", {"net/untitled/ID/old", "net/untitled/ID/new"}, "", {edited});
    row("another value", {"net/untitled/ID/other"}, "", {"net/untitled/ID: old -> other"});
    row("not arrived", {}, "settle", {edited});
    row("not arrived, taken back", {"net/untitled/ID/old"}, "settle", {});
    row("not arrived, of another file", {"net/untitled/ID/old"}, "settle alone",
        {"net/untitled/ID: new -> old"});
    row("arrived", {}, "accept", {});
    row("arrived, taken back", {"net/untitled/ID/old"}, "accept", {"net/untitled/ID: new -> old"});
    row("fetched", {"net/untitled/ID/old"}, "fetch", {});
}

void TestChanges::doubtsWhatWasNotAnswered()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, answer);
    Session session;
    session.store().setValue("net/untitled/ID/new");
    const QList<Change> sent = session.list.all();
    session.list.doubt(sent);
    QVERIFY(session.list.isDoubted("net/untitled/ID", "new"));
    for (const QString &step : steps)
        session.store().setValue(step);
    const QSignalSpy heard(&session.list, &ChangeList::changed);
    const qsizetype before = session.list.count();
    if (answer.startsWith("settle"))
        session.list.settle(answer == "settle" ? "net" : "alone");
    else if (answer == "accept")
        session.list.accept(sent);
    else if (answer == "fetch")
        session.setFile("net", Net);
    QTEST(session.texts(), "changes");
    QCOMPARE(session.list.isDoubted("net/untitled/ID", "new"), answer.isEmpty() || answer == "settle alone");
    QVERIFY(session.list.count() == before || answer == "fetch" || !heard.isEmpty());
}

void TestChanges::knowsListsByTheirPositions_data()
{
    const TestTable<QByteArray, QString, QString> row("list", "key", "moved");
    const QByteArray disks =
        "<row_count>net/disk/DISKS/0</row_count><column_source>net/disk/NAME_</column_source>"
        "<column_source>net/disk/SIZE</column_source>";
    const QByteArray events =
        "<row_count>net/disk/DISKS</row_count><column_source>net/log/TIME</column_source>"
        "<column_source>net/log/TEXT</column_source>";
    row("users", {}, "CNT", "net/disk");
    row("renamed users", {}, "NAME1", "net/disk");
    row("levels of users", {}, "LEVEL1", "");
    row("packages", {}, "PACKAGE_NAME_1", "net/disk");
    row("not described", {}, "DISKS", "");
    row("a described count", disks, "DISKS", "net/disk");
    row("a described name", disks, "NAME_12", "net/disk");
    row("of a row with a name", disks, "SIZE0", "");
    row("no row", disks, "NAME_", "");
    row("of rows without names", events, "../log/TEXT1", "net/disk");
    row("no column", events, "../log/OTHER1", "");
}

void TestChanges::knowsListsByTheirPositions()
{
    QFETCH(QByteArray, list);
    QFETCH(QString, key);
    const PositionLists lists("<interface><item type='list'>" + list + "</item></interface>");
    const QString path = key.startsWith("../") ? key.replace("..", "net") : "net/disk/" + key;
    const MovedLists moved(lists, {{path, "a", "b"}}, [](const QString &count) {
        return count == "net/disk/DISKS" || count == "net/disk/CNT" || count == "net/disk/PACKAGES";
    });
    QTEST(moved.listOf(path), "moved");
    QCOMPARE(moved.isEmpty(), moved.listOf(path).isEmpty());
}

void TestChanges::asksAboutListsThatOthersHaveChanged_data()
{
    using Files = QMap<QString, QByteArray>;
    const TestTable<Files, QStringList, QStringList, QStringList> row("theirs", "edits", "asked", "left");
    const QByteArray cams = "CAMS=2\nNAME0=yard\nNAME1=gate\nBITRATE0=1\nBITRATE1=2\nDNS1=a\n";
    const auto net = [cams](const QByteArray &from, const QByteArray &to) {
        return Files{{"net", QByteArray(cams).replace(from, to)}};
    };
    const QByteArray events = "COUNT=2\nTEXT0=door\nTEXT1=motion\nMODEL=";
    row("an event", {{"log", events + "x\n"}}, {"net/untitled/DNS1/b"}, {}, {"net/untitled/DNS1"});
    row("a text beside the events", {{"log", events + "new\n"}}, {}, {"log/untitled/MODEL: x|new||"}, {});
    row("an event of which a text was edited", {{"log", events + "x\n"}}, {"log/untitled/TEXT0/mine"},
        {"log/untitled/TEXT0: motion|door|mine|log/untitled", "log/untitled/TEXT1: |motion||log/untitled"},
        {});
    row("another entry than the renamed one", net("BITRATE1=2", "BITRATE1=x"), {"net/untitled/NAME0/mine"},
        {"net/untitled/BITRATE1: 2|x||"}, {"net/untitled/NAME0"});
    row("the renamed entry", net("BITRATE0=1", "BITRATE0=x"), {"net/untitled/NAME0/mine"},
        {"net/untitled/BITRATE0: 1|x||net/untitled", "net/untitled/NAME0: yard|yard|mine|net/untitled"}, {});
    row("another name", net("gate", "door"), {"net/untitled/NAME0/mine"},
        {"net/untitled/NAME1: gate|door||net/untitled", "net/untitled/NAME0: yard|yard|mine|net/untitled"},
        {});
    row("a name, with an edit beside the list", net("gate", "door"), {"net/untitled/DNS1/b"},
        {"net/untitled/NAME1: gate|door||net/untitled"}, {"net/untitled/DNS1"});
    row("a name, with a password of the list", net("gate", "door"), {"net/untitled/PASSWD1/b"},
        {"net/untitled/NAME1: gate|door||net/untitled", "net/untitled/PASSWD1: ||b|net/untitled"}, {});
    row("the count in another file", {{"count", "USERS=3\n"}, {"users", "NAME0=ann\n"}},
        {"users/untitled/NAME0/mine"}, {"users/untitled/NAME0: ann|ann|mine|count/untitled"}, {});
    row("the count in another file, and an entry", {{"count", "USERS=3\n"}, {"users", "NAME0=eve\n"}},
        {"users/untitled/NAME1/mine"},
        {"users/untitled/NAME0: ann|eve||count/untitled", "users/untitled/NAME1: ||mine|count/untitled"}, {});
}

void TestChanges::asksAboutListsThatOthersHaveChanged()
{
    using Files = QMap<QString, QByteArray>;
    QFETCH(Files, theirs);
    QFETCH(QStringList, edits);
    const Files before{
        {"interface",
         "<i><item><row_count>log/untitled/COUNT</row_count><column_source>log/untitled/TEXT</column_source>"
         "</item><item><row_count>net/untitled/CAMS</row_count>"
         "<column_source>net/untitled/NAME</column_source><column_source>net/untitled/BITRATE</column_source>"
         "</item><item><row_count>count/untitled/USERS</row_count>"
         "<column_source>users/untitled/NAME</column_source></item></i>"},
        {"log", "COUNT=1\nTEXT0=motion\nMODEL=x\n"},
        {"net", "CAMS=2\nNAME0=yard\nNAME1=gate\nBITRATE0=1\nBITRATE1=2\nDNS1=a\n"},
        {"count", "USERS=2\n"},
        {"users", "NAME0=ann\n"}};
    Files now = before;
    now.insert(theirs);
    ComparedStore store(before, now);
    ChangeList list(store);
    for (const QString &edit : edits)
        store.setValue(edit);
    SaveCheck check(store, list,
                    [](const QString &path) { return path.startsWith("net/") || path.startsWith("users/"); });
    QSignalSpy finished(&check, &SaveCheck::finished);
    check.compare();
    QVERIFY(finished.wait());
    QCOMPARE(finished[0][0].toString(), QString());
    QStringList asked;
    for (const ForeignChange &change : check.foreignChanges())
        asked << change.path + ": " + change.before + '|' + change.recorder + '|' + change.own.value_or("") +
                     '|' + change.movedList;
    QTEST(asked, "asked");
    check.merge({});
    QTEST(pathsOf(list.all()), "left");
    for (auto file = now.cbegin(); file != now.cend(); ++file) {
        if (edits.isEmpty())
            QCOMPARE(store.pristine(file.key()), *file);
    }
}

void TestChanges::followsTheDirectivesOfStateFiles()
{
    const QByteArray state = "[ door ]\n#!s/PLACE=\\w+(?=\\s)/PLACE={net/untitled/ID}/\n"
                             "#! s/PIN=\\w+(?=\\s)/PIN={net/untitled/PASSWORD}/\n"
                             "#!s/DOOR=\\w+(?=\\s)/DOOR={net/untitled/CODE}/\nPLACE=old\nPIN=x\nDOOR=1\n";
    StoreFixture fixture(
        {{"net", Net + "CODE=1\n"}, {"net.original", Net}, {"state", state}, {"state.original", state}});
    ChangeList list(fixture.store());
    const auto pending = [&list] {
        QStringList texts;
        for (const Change &change : list.pendingChanges())
            texts << change.path + ": " + shownValue(change.oldValue, change.isSecret) + " -> " +
                         shownValue(change.newValue, change.isSecret);
        return texts;
    };
    QCOMPARE(pending(), QStringList());
    fixture.store().setValue("net/untitled/ID/new");
    QCOMPARE(pending(), QStringList({"state/door/PLACE: old -> new"}));
    for (const auto &[path, count] : {std::pair("net/untitled/ID", 1), {"net/untitled/CODE", 0}})
        QCOMPARE(statedirectives::pendingChanges(fixture.store(), "state", {path}).size(), count);
    // Neither its key nor its own mark tells that it is a secret.
    QVERIFY(list.isSecret("state/door/PIN") && !list.isSecret("state/door/DOOR"));
    list.secrets().mark("net/untitled/CODE");
    QVERIFY(list.isSecret("state/door/DOOR"));
    fixture.store().setValue("net/untitled/CODE/2");
    QVERIFY(pending().contains("state/door/DOOR: " + SecretKeys::dots() + " -> " + SecretKeys::dots()));
    // What the user edits in the file itself is listed there already.
    fixture.store().setValue("state/door/PLACE/mine");
    QVERIFY(!pending().join('|').contains("PLACE"));
    QCOMPARE(list.find("state/door/PLACE")->newValue, "mine");
}

void TestChanges::stopsDirectivesThatRunAway_data()
{
    const TestTable<QString, bool> row("text", "isStopped");
    row("twice is usual", "wlan=1\n#!s/wlan=\\d+/wlan={net/untitled/ID}/\n", false);
    row("many", QString("wlan=1\n#!s/wlan=\\d+/wlan={net/untitled/ID}/\n").repeated(1000), false);
    // Each run puts a blank in front of the directive, and into its pattern.
    row("a directive that moves itself", "wlan secret\n#!s/wlan.*/wlan {net/untitled/ID}/\n", true);
}

void TestChanges::stopsDirectivesThatRunAway()
{
    QFETCH(QString, text);
    QFETCH(bool, isStopped);
    qsizetype runs = 0;
    const CompiledState compiled = statedirectives::preview(text, [&](const QString &) {
        ++runs;
        return QString();
    });
    QCOMPARE(compiled.fault == CompiledState::Fault::TooSlow, isStopped);
    QVERIFY2(runs <= statedirectives::RunsOfEach * text.count("#!") + statedirectives::MoreRuns,
             qPrintable(QString::number(runs)));
}

void TestChanges::hidesStatesWithSecrets_data()
{
    const TestTable<QByteArray, bool, bool> row("state", "isPinSecret", "isPlaceSecret");
    const QByteArray values = "PIN='psk geheim'\nPLACE=zoo\n";
    row("no directive", values, false, false);
    // The value is not that of the password, so nothing but the directive tells.
    row("a directive that fits",
        "PIN='none'\nPLACE=zoo\n#!s/PIN='[^{}]*'/PIN='psk {net/untitled/PASSWORD}'/\n", true, false);
    row("one that does not fit what it has made", values + "#!s/psk [0-9]+/psk {net/untitled/PASSWORD}/\n",
        true, false);
    // Each application doubles what the next one replaces.
    row("directives without end", values + QByteArray("#!s/\\x7a/zz{net/untitled/PASSWORD}/\n").repeated(40),
        true, true);
}

void TestChanges::hidesStatesWithSecrets()
{
    QFETCH(QByteArray, state);
    StoreFixture fixture(
        {{"net", "PASSWORD=geheim\n"}, {"net.original", "PASSWORD=geheim\n"}, {"state", state}});
    const ChangeList list(fixture.store());
    fixture.store().setValue("net/untitled/PASSWORD/edited"); // the file still has the old one
    QTEST(list.isSecret("state/untitled/PIN"), "isPinSecret");
    QTEST(list.isSecret("state/untitled/PLACE"), "isPlaceSecret");
}

void TestChanges::takesNoUnreadableCopyForTheRecorders()
{
    const QTemporaryDir folder;
    UnreadableReader store(folder.path());
    store.setFilePath("net", folder.filePath("net"));
    ChangeList list(store);
    SaveCheck check(store, list, [](const QString &) { return true; });
    QSignalSpy finished(&check, &SaveCheck::finished);
    check.compare();
    QVERIFY(finished.wait());
    QVERIFY2(finished[0][0].toString().contains("net"), qPrintable(finished[0][0].toString()));
    QVERIFY(!check.newerFile("net"));
}

void TestChanges::hidesSecrets_data()
{
    const TestTable<QString, bool> row("path", "isSecret");
    row("password", "net/untitled/PASSWORD", true);
    row("in small letters", "users/untitled/user_pwd3", true);
    row("in letters that fold to others", u"wlan/untitled/\u212aEY"_qs, true);
    row("beside other letters", u"wlan/untitled/\u041fPWD\u0416"_qs, true);
    row("community", "net/snmp/READ_COMMUNITY", true);
    row("in the section only", "net/token/ID", false);
    row("in the file only", "keys/untitled/ID", false);
    row("in a name that no address has", "net/untitled/A/PASSWORD", true);
    row("anything else", "net/untitled/NAME", false);
    row("marked", "net/untitled/PIN", true);
}

void TestChanges::hidesSecrets()
{
    QFETCH(QString, path);
    QFETCH(bool, isSecret);
    SecretKeys secrets;
    secrets.mark("net/untitled/PIN");
    QCOMPARE(secrets.contains(path), isSecret);
    SecretKeys described;
    int asked = 0;
    described.setSource([&asked] {
        ++asked;
        return QStringList("net/untitled/PIN");
    });
    QCOMPARE(described.isKnown(path), isSecret && !path.endsWith("PIN"));
    QCOMPARE(asked, 0);
    QCOMPARE(described.contains(path), isSecret);
    QCOMPARE(described.isKnown(path), isSecret);
    QVERIFY(described.contains(path) == isSecret && asked == 1);
    const Change change{path, "long old value", "new", isSecret};
    QCOMPARE(shownValue(change.oldValue, change.isSecret) == shownValue(change.newValue, change.isSecret),
             isSecret);
    QCOMPARE(shownValue(change.newValue, change.isSecret) == "new", !isSecret);
    // Nothing tells that a password is empty.
    QCOMPARE(shownValue("", isSecret) == shownValue({}, isSecret), isSecret);
    QCOMPARE(shownValue("", isSecret) == shownValue("new", isSecret), isSecret);
}

void TestChanges::readsDescribedSecrets_data()
{
    const TestTable<QByteArray, QString> row("description", "paths");
    const auto document = [](const QByteArray &content, const QByteArray &declaration = {}) {
        return declaration + "<pvsetup>" + content + "</pvsetup>";
    };
    const auto item = [](const QByteArray &mark, const QByteArray &path) {
        return "<item " + mark + "><key>" + path + "</key></item>";
    };
    row("what is typed hidden", document(item("password=\"on\"", "a/b/PIN") + item("id=\"1\"", "a/b/X")),
        "a/b/PIN");
    row("what says so, in other quotes", document(item("id='1' secret = 'yes'", "a/b/PIN")), "a/b/PIN");
    row("an escaped mark", document(item("secret=\"y&#101;s\"", "a/b/PIN")), "a/b/PIN");
    row("no mark", document(item("password=\"off\" secret=\"no\"", "a/b/PIN")), "");
    row("the word elsewhere",
        document("<password>x</password><t>secret password</t><!-- password=\"on\" -->" +
                 item("a=\"1\"", "a/b/X")),
        "");
    row("keys in texts, but not in other elements",
        document("<item secret=\"yes\"><text>A<key>a/b/PIN/1</key></text><u><key>a/b/X</key></u></item>"),
        "a/b/PIN");
    row("an element in another",
        document("<item password=\"on\">" + item("secret=\"yes\"", "a/b/IN") + "<key>a/b/OUT</key></item>"),
        "a/b/IN,a/b/OUT");
    const QByteArray words = QByteArray("<t>\u0436</t>").repeated(400); // cut within a letter
    row("a large element", document("<item secret=\"yes\">" + words + "<key>a/b/PIN</key></item>"),
        "a/b/PIN");
    row("many large elements",
        document(("<item secret=\"yes\">" + words + "<key>a/b/PIN</key></item>").repeated(40)), "a/b/PIN");
    row("another encoding",
        document("<t>\xe6</t>" + item("secret=\"yes\"", "a/b/PIN"),
                 "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>"),
        "a/b/PIN");
    row("entities of its own",
        document("<item secret=\"yes\"><t>&own;</t><key>a/b/PIN</key></item>",
                 "<!DOCTYPE pvsetup [<!ENTITY own \"x\">]>"),
        "a/b/PIN");
    row("cut off", "<pvsetup>" + item("secret=\"yes\"", "a/b/PIN") + "<item secret=\"yes\"><key>a/b/Q</key>",
        "a/b/PIN,a/b/Q");
}

void TestChanges::readsDescribedSecrets()
{
    QFETCH(QByteArray, description);
    QStringList paths = describedSecrets(description);
    paths.sort();
    QTEST(paths.join(','), "paths");
    if (!description.contains("encoding"))
        description = QStringEncoder(QStringEncoder::Utf16,
                                     QStringEncoder::Flag::WriteBom)(QString::fromUtf8(description));
    paths = describedSecrets(description);
    paths.sort();
    QTEST(paths.join(','), "paths");
}

QTEST_GUILESS_MAIN(TestChanges)
#include "tst_changes.moc"
