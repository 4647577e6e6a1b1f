#include "SetupRun.h"
#include "recorder/RecorderServer.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace paravue::test;

namespace
{

/// Stands between a client and a recorder and keeps every byte that the client sends.
class Relay
{
public:
    explicit Relay(quint16 recorderPort)
    {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this, recorderPort] {
            QTcpSocket *client = m_server.nextPendingConnection();
            auto *recorder = new QTcpSocket(client);
            sent.append(QByteArray());
            QObject::connect(client, &QTcpSocket::readyRead, recorder, [this, client, recorder] {
                const QByteArray bytes = client->readAll();
                sent.last() += bytes;
                recorder->write(bytes);
            });
            QObject::connect(recorder, &QTcpSocket::readyRead, client,
                             [client, recorder] { client->write(recorder->readAll()); });
            QObject::connect(client, &QTcpSocket::disconnected, recorder, &QTcpSocket::disconnectFromHost);
            recorder->connectToHost(QHostAddress::LocalHost, recorderPort);
            recorder->waitForConnected();
        });
        m_server.listen(QHostAddress::LocalHost);
    }

    /// The library reads a port as a signed 16-bit number.
    QString address(const QString &account) const
    {
        return account + "@127.0.0.1:" + QString::number(static_cast<qint16>(m_server.serverPort()));
    }

    QList<QByteArray> sent; ///< by connection

private:
    QTcpServer m_server;
};

const char Description[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<pvsetup version="1.0">
  <window><title>@title</title><self/></window>
  <buttonOK>
    <text>@save</text>
    <action type="call" slot="callSetup" param="save_settings">device</action>
    <action type="call" slot="accept">self</action>
  </buttonOK>
  <buttonCancel><text>@cancel</text></buttonCancel>
  <tabwidget>
    <tab>
      <name>@network</name>
      <item type="gridlayout">
        <item type="edit" row="0" column="0"><key>net/untitled/HOSTNAME</key></item>
        <item type="checkbox" row="1" column="0"><text>@mail</text><key>net/untitled/MAIL</key></item>
        <item type="label" row="2" column="0"><text>@place: {streams/common/place}</text></item>
        <item type="edit" row="3" column="0"><key>streams/common/place</key></item>
        <item type="setup" row="4" column="0"><device/></item>
      </item>
    </tab>
  </tabwidget>
  <translations>
    <en>
      <title>Gate</title><save>Save all</save><cancel>Cancel</cancel><network>Network</network>
      <mail>Send mail</mail><place>Place</place>
    </en>
  </translations>
</pvsetup>
)";

struct NamedFile {
    const char *name;
    const char *content;
};

const NamedFile RecorderFiles[] = {
    {"interface.xml", Description},
    {"streams", "[common]\nlanguage=en\nplace='Gate'\n\n[cam0]\nfps=25\n"},
    {"net", "# Address\nHOSTNAME=old\nIP='10.0.0.5'\nMAIL=on\n"},
    {"time", "YYYYMMDDHHMMSS=20240501120000\nTIME_ZONE=UTC-3\n"},
    {"timers", "[ week ]\r\nmonday='08:00 18:00'\r\n"},
    {"soft", "VERSION=1.2.3\n"},
    {"disk", "OVERWRITE=on\n"},
    {"users", "CNT=1\nNAME0=admin\nPASSWD0=admin\nLEVEL0=2\n"},
    {"state", "[ identity ]\n#! s/PLACE=\\w+(?=\\s)/PLACE={streams/common/place}/\nPLACE=Gate\n"},
};

// What a save sends after the edits of the test, written by hand. Files that were read or edited come in the
// form that the store writes; the others as the recorder sent them, with LF line ends.
const char SavedFiles[] = "\004LOGIN=admin\r\nPASS=admin\r\n"
                          "PUT CONFIG\r\nLENGTH=65\r\n"
                          "[common]\nlanguage = 'en'\nplace = 'Loading dock'\n\n[cam0]\nfps = 25\n"
                          "PUT NET CONFIG\r\nLENGTH=61\r\n"
                          "# Address\nHOSTNAME = 'new host'\nIP = '10.0.0.5'\nMAIL = 'off'\n"
                          "PUT TIME CONFIG\r\nLENGTH=38\r\n"
                          "YYYYMMDDHHMMSS = \nTIME_ZONE = 'UTC-3'\n"
                          "PUT TIMER CONFIG\r\nLENGTH=30\r\n"
                          "[ week ]\nmonday='08:00 18:00'\n"
                          "PUT DISK CONFIG\r\nLENGTH=13\r\n"
                          "OVERWRITE=on\n"
                          "PUT USER CONFIG\r\nLENGTH=41\r\n"
                          "CNT=1\nNAME0=admin\nPASSWD0=admin\nLEVEL0=2\n"
                          "PUT STATE CONFIG\r\nLENGTH=83\r\n"
                          "[ identity ]\n#! s/PLACE=\\w+(?=\\s)/PLACE={streams/common/place}/\n"
                          "PLACE=Loading dock\n";

/// The bytes of a conversation, cut before each command.
QList<QByteArray> pieces(const QByteArray &bytes)
{
    QList<QByteArray> result;
    for (qsizetype start = 0; start < bytes.size();) {
        const qsizetype next = bytes.indexOf("PUT ", start + 1);
        const qsizetype end = next < 0 ? bytes.size() : next;
        result += bytes.sliced(start, end - start);
        start = end;
    }
    return result;
}

} // namespace

class TestSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void savesWhatWasTyped();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    std::unique_ptr<Relay> m_relay;
};

void TestSession::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    for (const NamedFile &named : RecorderFiles) {
        QFile file(m_folder->filePath(named.name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(named.content);
    }
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    m_relay = std::make_unique<Relay>(m_recorder->port());
}

void TestSession::savesWhatWasTyped()
{
    const QString address = m_relay->address("admin:admin");
    {
        Session first(address);
        QVERIFY(first.isFine());
        QLineEdit *host = first.field("old");
        QLineEdit *place = first.field("Gate");
        auto *mail = buttonWithText<QCheckBox>(*first.window, "Send mail");
        auto *save = buttonWithText<QPushButton>(*first.window, "Save all");
        QVERIFY(host && place && mail && save);

        replaceText(*host, "new host");
        replaceText(*place, "Loading dock");
        mail->click();
        QSignalSpy saved(&first.store, &OrbSetup::storeDone);
        save->click();
        QCOMPARE(first.window->result(), int(QDialog::Accepted));
        QVERIFY(saved.wait(20'000));
        QVERIFY(first.isFine());
    }
    QCOMPARE(m_relay->sent.size(), 2);
    // Compared piece by piece, as a failure shows the beginnings only.
    const QList<QByteArray> sent = pieces(m_relay->sent.last());
    const QList<QByteArray> expected = pieces(SavedFiles);
    for (qsizetype i = 0; i < expected.size(); ++i)
        QCOMPARE(sent.value(i), expected.at(i));
    QCOMPARE(m_relay->sent.last(), QByteArray(SavedFiles));

    const Session second(address);
    QVERIFY(second.isFine());
    QVERIFY(second.field("new host"));
    QVERIFY(second.field("Loading dock"));
    QVERIFY(!buttonWithText<QCheckBox>(*second.window, "Send mail")->isChecked());
}

QTEST_MAIN(TestSession)
#include "tst_session.moc"
