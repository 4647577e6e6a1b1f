#include "support/FakeRecorder.h"
#include "support/Hvx3Bytes.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "video/PtzVideoReceiver.h"
#include "video/cHvx3Parser.h"

#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>

using namespace paravue::test;

namespace
{

const QByteArray Login = "\x01LOGIN=\r\nPASS=\r\n";
const QByteArray Acknowledgement = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";

QDomElement taskFor(const FakeRecorder &recorder)
{
    QDomDocument document;
    QDomElement task = document.createElement("timetask");
    QDomElement url = document.createElement("url");
    url.setAttribute("parsed", "127.0.0.1:" + QString::number(recorder.port()));
    task.appendChild(url);
    return task;
}

Hvx3Stream textStream(quint8 id, const QByteArray &title, quint8 type = 4)
{
    return {.id = id, .type = type, .label1 = "text", .label2 = title};
}

QByteArray header(const QList<Hvx3Stream> &streams)
{
    return hvx3Header(QList<Hvx3Stream>{{}} + streams) + hvx3Index(1);
}

QByteArray text(quint8 id, const QByteArray &bytes)
{
    return hvx3Data(id, WholeFrame, bytes);
}

} // namespace

class TestPtzVideoReceiver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emitsPositions_data();
    void emitsPositions();
    void emitsTheLastOfManyPositions();
    void sendsCommands();
};

void TestPtzVideoReceiver::emitsPositions_data()
{
    const TestTable<QByteArray, QStringList> row("stream", "positions");
    const QByteArray events = text(1, "9,9,9");
    row("by title", header({textStream(1, "Events"), textStream(2, "PTZ")}) + events + text(2, "0.1,0.2,0.3"),
        {"0.1,0.2,0.3", ""}); // the connection is lost at the end
    row("with a zero byte, once",
        header({textStream(7, "PTZ")}) + text(7, QByteArray("1,0\0", 4)) + text(7, "1,0"), {"1,0", ""});
    row("no title", header({textStream(1, "ptz"), textStream(2, "PTZ 1")}) + events + text(2, "1,1"), {});
    row("no text stream", header({textStream(1, "PTZ", 2)}) + events, {});
    row("the first of two",
        header({textStream(3, "PTZ"), textStream(2, "PTZ")}) + text(2, "2,2") + text(3, "3,3"), {"3,3", ""});
    row("too long", header({textStream(1, "PTZ")}) + text(1, QByteArray(129, '1')), {});
    row("another stream later",
        header({textStream(1, "PTZ")}) + text(1, "1,1") +
            header({textStream(1, "Events"), textStream(2, "PTZ")}) + events + text(2, "2,2"),
        {"1,1", "2,2", ""});
    row("none later",
        header({textStream(1, "PTZ")}) + text(1, "1,1") + header({textStream(1, "Events")}) + events,
        {"1,1", ""});
}

void TestPtzVideoReceiver::emitsPositions()
{
    QFETCH(QByteArray, stream);
    QFETCH(QStringList, positions);
    FakeRecorder recorder;
    recorder.expect(Login).send(Acknowledgement).send(stream).expect("PTZ GOTO 1\r\n").close();
    paravue::PtzVideoReceiver receiver(nullptr, taskFor(recorder));
    QStringList told;
    connect(&receiver, &paravue::PtzVideoReceiver::positionChanged, this, [&](const QString &position) {
        told << position;
        QCOMPARE(receiver.position(), position);
    });
    QSignalSpy closed(receiver.findChild<QTcpSocket *>(), &QTcpSocket::disconnected);
    int frames = 0;
    connect(receiver.findChild<cHvx3Parser *>(), &cHvx3Parser::onDATA, this, [&] { ++frames; });
    AWAIT_COMPARE(told.value(positions.size() - 2), positions.value(positions.size() - 2));
    AWAIT_COMPARE(frames, stream.count('\xC0')); // each is a whole frame
    receiver.goTo(1);
    QVERIFY(closed.wait());
    QCOMPARE(told, positions);
}

void TestPtzVideoReceiver::emitsTheLastOfManyPositions()
{
    QByteArray texts;
    for (int i = 0; i < 5000; ++i)
        texts += text(1, "0," + QByteArray::number(i));
    FakeRecorder recorder;
    recorder.expect(Login).send(Acknowledgement).send(header({textStream(1, "PTZ")}) + texts);
    paravue::PtzVideoReceiver receiver(nullptr, taskFor(recorder));
    QSignalSpy told(&receiver, &paravue::PtzVideoReceiver::positionChanged);
    AWAIT_COMPARE(receiver.position(), "0,4999");
    QVERIFY2(told.size() < 250, QByteArray::number(told.size()));
}

void TestPtzVideoReceiver::sendsCommands()
{
    const QByteArray commands = "PTZ GOTO 64\r\nPTZ POINT 2 0.5,0.5,\xC3\xA9\r\nPTZ POINT 1 \r\n"
                                "PTZ MOVE 0.5,-1,0\r\n";
    FakeRecorder recorder;
    recorder.expect(Login).send(Acknowledgement).expect(commands).send("last").close();
    paravue::PtzVideoReceiver receiver(nullptr, taskFor(recorder));
    auto *socket = receiver.findChild<QTcpSocket *>();
    receiver.goTo(1); // dropped, as it is not connected
    connect(socket, &QTcpSocket::connected, &receiver, [&] { receiver.goTo(2); });
    QSignalSpy answered(socket, &QTcpSocket::readyRead);
    QVERIFY(answered.wait());

    receiver.goTo(0);
    for (const QString &bad : {QString("0,0\r\nPTZ GOTO 1"), QString("0,0\n"), QString(QChar(0)),
                               QString(QChar(0x85)), QString(257, '1'), QString(129, QChar(0xE9))})
        receiver.setPoint(1, bad);
    receiver.goTo(64);
    receiver.setPoint(2, QStringLiteral("0.5,0.5,\u00e9"));
    receiver.setPoint(1, QString());
    for (const QString &bad : {QString(), QString("0,0\r\nPTZ GOTO 1"), QString(129, '1')})
        receiver.turnTo(bad);
    receiver.turnTo("0.5,-1,0");
    QSignalSpy closed(socket, &QTcpSocket::disconnected);
    QVERIFY(closed.wait());
    receiver.goTo(3);
    QCOMPARE(recorder.received(), Login + commands);
    QCOMPARE(recorder.problem(), QString());
}

QTEST_MAIN(TestPtzVideoReceiver)
#include "tst_ptzvideoreceiver.moc"
