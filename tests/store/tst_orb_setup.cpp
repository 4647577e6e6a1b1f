#include "StoreFixture.h"
#include "store/OrbSettings.h"
#include "store/OrbSetup.h"
#include "store/PasswordDigest.h"
#include "support/TestTable.h"

#include <QBuffer>
#include <QSignalSpy>

using namespace paravue::test;

namespace
{

/// Shows what derived classes may use.
class OpenStore : public OrbSetup
{
public:
    using OrbSetup::m_settings;
    using OrbSetup::myReadFunc;
    using OrbSetup::myWriteFunc;
    using OrbSetup::OrbSetup;
    using OrbSetup::settings;
};

} // namespace

class TestOrbSetup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addressParts_data();
    void addressParts();
    void reads_data();
    void reads();
    void writes();
    void wrongAddresses();
    void unknownFile();
    void patternsOverKeys();
    void filesAreWrittenWhenReleased();
    void baseOperations();
    void flatMapReads();
    void flatMapWrites();
    void passwordDigest();
};

void TestOrbSetup::addressParts_data()
{
    const TestTable<QString, QString> row("path", "rest");
    row("a/b/c/d/e", "a/b/c", "d/e");
    row("a/b/c", "a/b/c", QString());
    row("a/b/c/", "a/b/c", "");
    row("///", "//", "");
    row("////x", "//", "/x");
    row("a/b", "a/b", QString());
    row("", "", QString());
}

void TestOrbSetup::addressParts()
{
    const QString address = QTest::currentDataTag();
    QFETCH(QString, rest);
    QTEST(OrbSetup::path(address), "path");
    QCOMPARE(OrbSetup::defValue(address), rest);
    QCOMPARE(OrbSetup::defValue(address).isNull(), rest.isNull());
}

void TestOrbSetup::reads_data()
{
    const TestTable<QString> row("value");
    row("net/Eth0/Name/none", "lan 1");
    row("net/Eth0/Empty/none", "");
    row("net/Eth0/Ip/0.0.0.0", "0.0.0.0");
    row("net/Eth0/Path/a/b", "a/b");
    row("net/Eth0/Ip", "");
    row("net/Eth1/Name/none", "none");
    row("net///none", "none");
}

void TestOrbSetup::reads()
{
    StoreFixture fixture({{"net", "[Eth0]\nName='lan 1'\nEmpty=\n"}});
    QTEST(fixture.store().value(QTest::currentDataTag()), "value");
    QCOMPARE(fixture.takeErrors(), QStringList());
}

void TestOrbSetup::writes()
{
    StoreFixture fixture({{"net", "[Eth0]\nIp=10.0.0.1\n"}, {"other", "k=07\n"}});
    OrbSetup &store = fixture.store();
    store.setValue("net/Eth0/Path/a/b");
    store.setValue("net/Eth0/Ip/");
    QCOMPARE(store.value("net/Eth0/Path"), "a/b");
    QCOMPARE(store.value("net/Eth0/Ip/none"), "");
    store.flush();
    QCOMPARE(fixture.content("net"), "[Eth0]\r\nIp = \r\nPath = 'a/b'\r\n");
    QCOMPARE(fixture.content("other"), "k=07\n"); // nobody asked for it
    store.value("other/untitled/k");
    store.flush();
    QCOMPARE(fixture.content("other"), "k = '07'\r\n");
}

void TestOrbSetup::wrongAddresses()
{
    StoreFixture fixture({{"net", "[Eth0]\nIp=10.0.0.1\n"}});
    OrbSetup &store = fixture.store();
    store.setValue("net/Eth0/Ip");
    QCOMPARE(store.value("net/Eth0"), "");
    QCOMPARE(store.regexp_values("net"), QStringList());
    QCOMPARE(fixture.takeErrors(), QStringList({"Wrong value \"net/Eth0/Ip\"", "Wrong key \"net/Eth0\"",
                                                "Wrong regexp_key \"net\""}));
    QCOMPARE(store.value("net/Eth0/Ip"), "10.0.0.1");
}

void TestOrbSetup::unknownFile()
{
    StoreFixture fixture({});
    OrbSetup &store = fixture.store();
    QVERIFY(!store.fileExists("net"));
    QCOMPARE(fixture.takeErrors(), QStringList());
    QCOMPARE(store.value("net/a/b/default"), "default");
    store.setValue("net/a/b/kept");
    QCOMPARE(store.value("net/a/b/default"), "kept");
    QCOMPARE(store.regexp_values("net/a/.*"), QStringList("net/a/b/kept"));
    const QStringList missing("File \"net\" does not exist");
    QCOMPARE(fixture.takeErrors(), missing); // once, not at each access
    QCOMPARE(store.filePath("net"), "");
    QCOMPARE(fixture.takeErrors(), missing);

    QCOMPARE(store.value("late/a/b/default"), "default");
    fixture.setFile("late", "[a]\nb=1\n");
    QCOMPARE(store.value("late/a/b/default"), "1");
}

void TestOrbSetup::patternsOverKeys()
{
    StoreFixture fixture({{"users", "[Users]\nuser2=b\nuser1=a\nuserx=c\n[Old]\nuser1=d\n"}});
    QCOMPARE(fixture.store().regexp_values("users/Users/user[0-9]+"),
             QStringList({"users/Users/user1/a", "users/Users/user2/b"}));
    QCOMPARE(fixture.store().regexp_values("users/[UO].*/user1/ignored"),
             QStringList({"users/Old/user1/d", "users/Users/user1/a"}));
}

void TestOrbSetup::filesAreWrittenWhenReleased()
{
    StoreFixture fixture({{"net", "[a]\nb=1\n"}});
    {
        OpenStore store;
        store.setFilePath("net", fixture.store().filePath("net"));
        store.setValue("net/a/b/2");
        store.m_settings.clear();
        QCOMPARE(fixture.content("net"), "[a]\r\nb = 2\r\n");
        store.setValue("net/a/b/3");
        QCOMPARE(store.settings("net").path(), store.filePath("net"));
    }
    QCOMPARE(fixture.content("net"), "[a]\r\nb = 3\r\n");
}

void TestOrbSetup::baseOperations()
{
    OrbSetup store("admin:1@10.0.0.1");
    QCOMPARE(store.address(), "admin:1@10.0.0.1");
    QSignalSpy progress(&store, &OrbSetup::progress);
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    QSignalSpy stored(&store, &OrbSetup::storeDone);
    store.load();
    QCOMPARE(loaded.count(), 1);
    store.function("save_settings", "ignored");
    QCOMPARE(stored.count(), 1);
    store.function("reboot", QString());
    QCOMPARE(stored.count(), 1);
    QCOMPARE(progress.count(), 3);
    QCOMPARE(progress[2][0].toInt(), 100);
}

void TestOrbSetup::flatMapReads()
{
    QBuffer device;
    device.setData(
        "a = 1\r\nempty =\r\nquoted = ''\r\n[ s ]\r\n; note\r\nb = \"it's\"\r\nc = x y\n\rd = 1\n");
    QVERIFY(device.open(QIODevice::ReadOnly));
    device.seek(10); // it is read from its start all the same
    QMap<QString, QVariant> map;
    QVERIFY(OpenStore::myReadFunc(device, map));
    const QMap<QString, QVariant> expected{
        {"untitled/a", "1"}, {"untitled/quoted", QString()}, {"s/b", "it's"}, {"s/c", "x y"}, {"s/d", "1"}};
    QCOMPARE(map, expected);
    QVERIFY(device.isTextModeEnabled());
}

void TestOrbSetup::flatMapWrites()
{
    const QMap<QString, QVariant> map{{"a/k", 12}, {"a/e", QString()}, {"b/t", "x y"}, {"b/z", "007"}};
    QBuffer device;
    device.setData(QByteArray(100, '?'));
    QVERIFY(device.open(QIODevice::ReadWrite));
    QVERIFY(OpenStore::myWriteFunc(device, map));
    QCOMPARE(device.data(), "[ a ]\r\ne = ''\r\nk = 12\r\n\r\n[ b ]\r\nt = 'x y'\r\nz = '007'\r\n");
    QVERIFY(device.isTextModeEnabled());

    QMap<QString, QVariant> again;
    QVERIFY(OpenStore::myReadFunc(device, again));
    QCOMPARE(again.value("b/z").toString(), "007");
    QCOMPARE(again.size(), 4);
}

void TestOrbSetup::passwordDigest()
{
    QCOMPARE(paravue::passwordDigest("admin"), "21232f297a57a5a743894a0e4a801fc3");
    QCOMPARE(paravue::passwordDigest(""), "d41d8cd98f00b204e9800998ecf8427e");
}

QTEST_APPLESS_MAIN(TestOrbSetup)
#include "tst_orb_setup.moc"
