#include "FakeRecorder.h"
#include "device/OrbNetSetup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <zlib.h>

using paravue::test::FakeRecorder;

namespace
{

QByteArray gzipped(const QByteArray &text)
{
    z_stream stream{};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    QByteArray result(qsizetype(deflateBound(&stream, uLong(text.size()))), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = uInt(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(result.data());
    stream.avail_out = uInt(result.size());
    deflate(&stream, Z_FINISH);
    result.resize(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return result;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

/// A store with everything that it says noted down.
class Store : public OrbNetSetup
{
public:
    explicit Store(const QString &address) : OrbNetSetup(address)
    {
        connect(this, &OrbSetup::pseudothrow, this, [this](const QString &text) { errors << text; });
        connect(this, &OrbSetup::progress, this, [this](int percent) {
            percents << percent;
            activities << activity();
        });
    }

    bool fetch()
    {
        QSignalSpy done(this, &OrbSetup::loadDone);
        load();
        return done.wait() && settled();
    }
    bool send()
    {
        QSignalSpy done(this, &OrbSetup::storeDone);
        store();
        return done.wait() && settled();
    }
    /// The end is announced before the link is idle.
    bool settled()
    {
        return QTest::qWaitFor([this] { return m_state == 0; });
    }
    bool runCommand(const QByteArray &command, const QByteArray &body, bool sends)
    {
        QSignalSpy done(this, sends ? &OrbSetup::storeDone : &OrbSetup::loadDone);
        _do_command(command, body, sends);
        return done.wait() && settled();
    }
    QByteArray content(const QString &name) { return contentOf(filePath(name)); }

    QStringList errors;
    QStringList activities;
    QList<int> percents;
};

const QMap<QString, QByteArray> &files()
{
    static const QMap<QString, QByteArray> bodies{
        {"interface", gzipped("<pvsetup version=\"1.0\"/>")},
        {"streams", "[ stream_0 ]\nbrightness = 50\n"},
        {"net", "A=1\nB=2\n"},
        {"time", "YYYYMMDDHHMMSS=20260101120000\nTIME_ZONE='UTC-3'\n"},
        {"timers", "[ Timer1 ]\r\nfrom = 10\r\n"},
        {"soft", "PACKAGE_NAME_0=core\n"},
        {"disk", "DISC=ok\n"},
        {"users", "NAME0=admin\n"},
        {"state", "ID=old\n"},
    };
    return bodies;
}

} // namespace

class TransferTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fetchesTheWholeTable();
    void sendsWhatTheRecorderTakes();
};

void TransferTest::fetchesTheWholeTable()
{
    FakeRecorder recorder;
    recorder.login().fetchOf(files()).expectClosed();
    Store store(recorder.address());
    const bool fetched = store.fetch();
    qDebug() << store.errors << recorder.problem() << recorder.received();
    QVERIFY(fetched);

    QCOMPARE(store.errors, QStringList());
    QCOMPARE(recorder.problem(), QString());
    QCOMPARE(store.percents, QList<int>({0, 11, 22, 33, 44, 55, 66, 77, 88, 100}));
    QCOMPARE(store.activities.first(), QString("Fetching \"interface\""));
    QCOMPARE(store.activities.last(), QString());
    QCOMPARE(store.content("interface"), "<pvsetup version=\"1.0\"/>");
    QCOMPARE(store.content("net"), "[ untitled ]\r\nA=1\nB=2\n");
    QCOMPARE(store.content("timers"), "[ Timer1 ]\r\nfrom = 10\r\n");
    QCOMPARE(store.content("state"), "ID=old\n");
    QCOMPARE(store.value("net/untitled/A"), "1");
    QCOMPARE(store.value("streams/stream_0/brightness"), "50");
    for (const QString &name : files().keys())
        QCOMPARE(store.content(name + ".original"), store.content(name));
}

void TransferTest::sendsWhatTheRecorderTakes()
{
    FakeRecorder recorder;
    recorder.login().fetchOf(files()).expectClosed();
    recorder.startConnection().login();
    recorder.reply("PUT CONFIG\r\nLENGTH=30\r\n[ stream_0 ]\nbrightness = '7'\n");
    Store store(recorder.address());
    const bool fetched = store.fetch();
    qDebug() << store.errors << recorder.problem() << recorder.received();
    QVERIFY(fetched);
    store.setValue("streams/stream_0/brightness/60");
    store.send();
    qDebug() << recorder.problem();
}

QTEST_GUILESS_MAIN(TransferTest)
#include "tst_transfer.moc"
