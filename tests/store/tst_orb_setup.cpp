#include "store/OrbSettings.h"
#include "store/OrbSetup.h"
#include "store/PasswordDigest.h"

#include <QBuffer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

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

class tst_OrbSetup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void addressParts_data();
    void addressParts();
    void reads_data();
    void reads();
    void writes();
    void wrongAddresses();
    void unknownFile();
    void unknownFileThatGetsAPath();
    void patternsOverKeys();
    void flushWritesEveryFile();
    void filesAreWrittenWhenReleased();
    void baseOperations();
    void flatMapReads();
    void flatMapWrites();
    void passwordDigest();

private:
    QString makeFile(const QString &name, const QByteArray &content);
    static QByteArray contentOf(const QString &path);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_OrbSetup::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QString tst_OrbSetup::makeFile(const QString &name, const QByteArray &content)
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write a test file");
    return file.fileName();
}

QByteArray tst_OrbSetup::contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

void tst_OrbSetup::addressParts_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("rest");
    QTest::newRow("rest with slashes") << "a/b/c/d/e"
                                       << "a/b/c"
                                       << "d/e";
    QTest::newRow("no rest") << "a/b/c"
                             << "a/b/c" << QString();
    QTest::newRow("empty rest") << "a/b/c/"
                                << "a/b/c"
                                << "";
    QTest::newRow("empty parts") << "///"
                                 << "//"
                                 << "";
    QTest::newRow("empty parts and a rest") << "////x"
                                            << "//"
                                            << "/x";
    QTest::newRow("two parts") << "a/b"
                               << "a/b" << QString();
    QTest::newRow("nothing") << ""
                             << "" << QString();
}

void tst_OrbSetup::addressParts()
{
    QFETCH(QString, address);
    QFETCH(QString, rest);
    QTEST(OrbSetup::path(address), "path");
    QCOMPARE(OrbSetup::defValue(address), rest);
    QCOMPARE(OrbSetup::defValue(address).isNull(), rest.isNull());
}

void tst_OrbSetup::reads_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("value");
    QTest::newRow("stored") << "net/Eth0/Name/none"
                            << "lan 1";
    QTest::newRow("stored and empty") << "net/Eth0/Empty/none"
                                      << "";
    QTest::newRow("default") << "net/Eth0/Ip/0.0.0.0"
                             << "0.0.0.0";
    QTest::newRow("default with slashes") << "net/Eth0/Path/a/b"
                                          << "a/b";
    QTest::newRow("no default") << "net/Eth0/Ip"
                                << "";
    QTest::newRow("no such section") << "net/Eth1/Name/none"
                                     << "none";
    QTest::newRow("empty parts") << "net///none"
                                 << "none";
}

void tst_OrbSetup::reads()
{
    QFETCH(QString, address);
    OrbSetup store;
    QSignalSpy errors(&store, &OrbSetup::pseudothrow);
    store.setFilePath(QStringLiteral("net"),
                      makeFile(QStringLiteral("net"), "[Eth0]\nName='lan 1'\nEmpty=\n"));
    QTEST(store.value(address), "value");
    QCOMPARE(errors.count(), 0);
}

void tst_OrbSetup::writes()
{
    OrbSetup store;
    store.setFilePath(QStringLiteral("net"), makeFile(QStringLiteral("net"), "[Eth0]\nIp=10.0.0.1\n"));
    store.setValue(QStringLiteral("net/Eth0/Path/a/b"));
    store.setValue(QStringLiteral("net/Eth0/Ip/"));
    QCOMPARE(store.value(QStringLiteral("net/Eth0/Path")), QStringLiteral("a/b"));
    QCOMPARE(store.value(QStringLiteral("net/Eth0/Ip/none")), QString());
    store.flush();
    QCOMPARE(contentOf(store.filePath(QStringLiteral("net"))), "[Eth0]\r\nIp = \r\nPath = 'a/b'\r\n");
}

void tst_OrbSetup::wrongAddresses()
{
    OrbSetup store;
    QSignalSpy errors(&store, &OrbSetup::pseudothrow);
    store.setFilePath(QStringLiteral("net"), makeFile(QStringLiteral("net"), "[Eth0]\nIp=10.0.0.1\n"));
    store.setValue(QStringLiteral("net/Eth0/Ip"));
    QCOMPARE(store.value(QStringLiteral("net/Eth0")), QString());
    QCOMPARE(store.regexp_values(QStringLiteral("net")), QStringList());
    QCOMPARE(errors.count(), 3);
    QCOMPARE(errors[0][0].toString(), QStringLiteral("Wrong value \"net/Eth0/Ip\""));
    QCOMPARE(errors[1][0].toString(), QStringLiteral("Wrong key \"net/Eth0\""));
    QCOMPARE(errors[2][0].toString(), QStringLiteral("Wrong regexp_key \"net\""));
    QCOMPARE(store.value(QStringLiteral("net/Eth0/Ip")), QStringLiteral("10.0.0.1"));
}

void tst_OrbSetup::unknownFile()
{
    OrbSetup store;
    QSignalSpy errors(&store, &OrbSetup::pseudothrow);
    QVERIFY(!store.fileExists(QStringLiteral("net")));
    QCOMPARE(errors.count(), 0);
    QCOMPARE(store.value(QStringLiteral("net/a/b/default")), QStringLiteral("default"));
    store.setValue(QStringLiteral("net/a/b/kept"));
    QCOMPARE(store.value(QStringLiteral("net/a/b/default")), QStringLiteral("kept"));
    QCOMPARE(store.regexp_values(QStringLiteral("net/a/.*")), QStringList(QStringLiteral("net/a/b/kept")));
    QCOMPARE(errors.count(), 1); // once, not at each access
    QCOMPARE(errors[0][0].toString(), QStringLiteral("File \"net\" does not exist"));
    QCOMPARE(store.filePath(QStringLiteral("net")), QString());
    QCOMPARE(errors.count(), 2);
}

void tst_OrbSetup::unknownFileThatGetsAPath()
{
    OrbSetup store;
    QCOMPARE(store.value(QStringLiteral("net/a/b/default")), QStringLiteral("default"));
    store.setFilePath(QStringLiteral("net"), makeFile(QStringLiteral("net"), "[a]\nb=1\n"));
    QCOMPARE(store.value(QStringLiteral("net/a/b/default")), QStringLiteral("1"));
}

void tst_OrbSetup::patternsOverKeys()
{
    OrbSetup store;
    store.setFilePath(
        QStringLiteral("users"),
        makeFile(QStringLiteral("users"), "[Users]\nuser2=b\nuser1=a\nuserx=c\n[Old]\nuser1=d\n"));
    QCOMPARE(store.regexp_values(QStringLiteral("users/Users/user[0-9]+")),
             QStringList({QStringLiteral("users/Users/user1/a"), QStringLiteral("users/Users/user2/b")}));
    QCOMPARE(store.regexp_values(QStringLiteral("users/[UO].*/user1/ignored")),
             QStringList({QStringLiteral("users/Old/user1/d"), QStringLiteral("users/Users/user1/a")}));
}

void tst_OrbSetup::flushWritesEveryFile()
{
    OrbSetup store;
    const QString touched = makeFile(QStringLiteral("a"), "k=07\n");
    const QString untouched = makeFile(QStringLiteral("b"), "k=07\n");
    store.setFilePath(QStringLiteral("a"), touched);
    store.setFilePath(QStringLiteral("b"), untouched);
    store.value(QStringLiteral("a/untitled/k"));
    store.flush();
    QCOMPARE(contentOf(touched), "k = '07'\r\n");
    QCOMPARE(contentOf(untouched), "k=07\n"); // nobody asked for it
}

void tst_OrbSetup::filesAreWrittenWhenReleased()
{
    const QString path = makeFile(QStringLiteral("net"), "[a]\nb=1\n");
    {
        OpenStore store;
        store.setFilePath(QStringLiteral("net"), path);
        store.setValue(QStringLiteral("net/a/b/2"));
        store.m_settings.clear();
        QCOMPARE(contentOf(path), "[a]\r\nb = 2\r\n");
        store.setValue(QStringLiteral("net/a/b/3"));
        QCOMPARE(store.settings(QStringLiteral("net")).path(), path);
    }
    QCOMPARE(contentOf(path), "[a]\r\nb = 3\r\n");
}

void tst_OrbSetup::baseOperations()
{
    OrbSetup store(QStringLiteral("admin:1@10.0.0.1"));
    QCOMPARE(store.address(), QStringLiteral("admin:1@10.0.0.1"));
    QSignalSpy progress(&store, &OrbSetup::progress);
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    QSignalSpy stored(&store, &OrbSetup::storeDone);
    store.load();
    QCOMPARE(loaded.count(), 1);
    store.function(QStringLiteral("save_settings"), QStringLiteral("ignored"));
    QCOMPARE(stored.count(), 1);
    store.function(QStringLiteral("reboot"), QString());
    QCOMPARE(stored.count(), 1);
    QCOMPARE(progress.count(), 3);
    QCOMPARE(progress[2][0].toInt(), 100);
}

void tst_OrbSetup::flatMapReads()
{
    QBuffer device;
    device.setData(
        "a = 1\r\nempty =\r\nquoted = ''\r\n[ s ]\r\n; note\r\nb = \"it's\"\r\nc = x y\n\rd = 1\n");
    QVERIFY(device.open(QIODevice::ReadOnly));
    device.seek(10); // it is read from its start all the same
    QMap<QString, QVariant> map;
    QVERIFY(OpenStore::myReadFunc(device, map));
    const QMap<QString, QVariant> expected{{QStringLiteral("untitled/a"), QStringLiteral("1")},
                                           {QStringLiteral("untitled/quoted"), QString()},
                                           {QStringLiteral("s/b"), QStringLiteral("it's")},
                                           {QStringLiteral("s/c"), QStringLiteral("x y")},
                                           {QStringLiteral("s/d"), QStringLiteral("1")}};
    QCOMPARE(map, expected);
    QVERIFY(device.isTextModeEnabled());
}

void tst_OrbSetup::flatMapWrites()
{
    const QMap<QString, QVariant> map{{QStringLiteral("a/k"), 12},
                                      {QStringLiteral("a/e"), QString()},
                                      {QStringLiteral("b/t"), QStringLiteral("x y")},
                                      {QStringLiteral("b/z"), QStringLiteral("007")}};
    QBuffer device;
    device.setData(QByteArray(100, '?'));
    QVERIFY(device.open(QIODevice::ReadWrite));
    QVERIFY(OpenStore::myWriteFunc(device, map));
    QCOMPARE(device.data(), "[ a ]\r\ne = ''\r\nk = 12\r\n\r\n[ b ]\r\nt = 'x y'\r\nz = '007'\r\n");
    QVERIFY(device.isTextModeEnabled());

    QMap<QString, QVariant> again;
    QVERIFY(OpenStore::myReadFunc(device, again));
    QCOMPARE(again.value(QStringLiteral("b/z")).toString(), QStringLiteral("007"));
    QCOMPARE(again.size(), 4);
}

void tst_OrbSetup::passwordDigest()
{
    QCOMPARE(paravue::passwordDigest("admin"), "21232f297a57a5a743894a0e4a801fc3");
    QCOMPARE(paravue::passwordDigest(""), "d41d8cd98f00b204e9800998ecf8427e");
}

QTEST_APPLESS_MAIN(tst_OrbSetup)
#include "tst_orb_setup.moc"
