#include "support/TestTable.h"
#include "support/Waiting.h"
#include "video/HttpPictureReceiver.h"
#include "video/PictureUrl.h"
#include "video/StillPicture.h"
#include "video/VideoLimits.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDataStream>
#include <QDomDocument>
#include <QImageWriter>
#include <QNetworkProxy>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace paravue;
using namespace std::chrono_literals;

namespace
{

enum class Passes { One, Many };

QByteArray jpeg(const QSize &size = {64, 48}, Passes passes = Passes::One)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(passes == Passes::Many);
    writer.write(image);
    return buffer.data();
}

/// The same picture, claiming another size in its frame header. What is missing then is decoded as grey.
QByteArray claiming(const QByteArray &jpeg, int width, int height)
{
    QByteArray bytes = jpeg;
    const qsizetype header = std::max(bytes.indexOf("\xFF\xC0"), bytes.indexOf("\xFF\xC2"));
    const QList<int> size{height >> 8, height & 255, width >> 8, width & 255};
    for (int i = 0; i < 4; ++i)
        bytes[header + 5 + i] = char(size[i]);
    return bytes;
}

/// A picture that says when it was taken, as cameras write it: Exif's texts DateTimeOriginal and
/// OffsetTimeOriginal, each with its zero byte.
QByteArray takenAt(const QByteArray &time, const QByteArray &offset = {},
                   QDataStream::ByteOrder order = QDataStream::LittleEndian)
{
    constexpr quint16 Text = 2;
    constexpr quint16 Long = 4;
    constexpr quint32 Directory = 26;
    constexpr quint32 Texts = 56;
    QByteArray exif("Exif\0\0", 6);
    QByteArray tiff;
    QDataStream stream(&tiff, QIODevice::WriteOnly);
    stream.setByteOrder(order);
    stream << quint16(order == QDataStream::BigEndian ? 0x4D4D : 0x4949) << quint16(42) << quint32(8);
    stream << quint16(1) << quint16(0x8769) << Long << quint32(1) << Directory << quint32(0);
    stream << quint16(2) << quint16(0x9003) << Text << quint32(time.size() + 1) << Texts;
    stream << quint16(0x9011) << Text << quint32(offset.size() + 1) << Texts + quint32(time.size() + 1);
    stream << quint32(0);
    tiff += time + '\0' + offset + '\0';
    exif += tiff;
    QByteArray bytes = jpeg();
    const quint16 length = quint16(exif.size() + 2);
    return bytes.insert(2, "\xFF\xE1" + QByteArray(1, char(length >> 8)) + char(length & 255) + exif);
}

QByteArray answer(const QByteArray &body, const QByteArray &head = "200 OK")
{
    return "HTTP/1.1 " + head + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray md5(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

QByteArray field(const QByteArray &request, const QByteArray &name)
{
    const qsizetype start = request.indexOf(name + "=\"") + name.size() + 2;
    return request.mid(start, request.indexOf('"', start) - start);
}

const QByteArray AskBasic = "401 No\r\nWWW-Authenticate: Basic realm=\"r\"";
const QByteArray AskDigest = "401 No\r\nWWW-Authenticate: Digest realm=\"r\", nonce=\"n\", algorithm=MD5";

bool isBasic(const QByteArray &request)
{
    return request.contains("Authorization: Basic " + QByteArray("guest:secret").toBase64());
}

bool isDigest(const QByteArray &request)
{
    return request.contains("Authorization: Digest ") &&
           field(request, "response") == md5(md5("guest:r:secret") + ":n:" + md5("GET:/p"));
}

/// An HTTP server that answers as a test says.
class Server : public QTcpServer
{
public:
    /// Is given each whole request, its number from 1 on, and its connection.
    using Answer = std::function<void(QTcpSocket &client, const QByteArray &request, int number)>;

    explicit Server(Answer give) : m_give(std::move(give))
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *client = nextPendingConnection();
            ++connections;
            connect(client, &QTcpSocket::readyRead, this, [this, client] {
                m_received[client] += client->readAll();
                if (m_received[client].endsWith("\r\n\r\n"))
                    m_give(*client, m_received.take(client), ++requests);
            });
            connect(client, &QTcpSocket::disconnected, this, [this] { ++closed; });
        });
        listen(QHostAddress::LocalHost);
    }

    QString url(const QString &path = "/p") const
    {
        return "127.0.0.1:" + QString::number(qint16(serverPort())) + path; // as the store writes ports
    }

    int requests = 0;
    int connections = 0;
    int closed = 0;

private:
    Answer m_give;
    QHash<QTcpSocket *, QByteArray> m_received;
};

QDomElement task(QDomDocument &document, const QString &parsed)
{
    QDomElement element = document.createElement("timetask");
    QDomElement url = document.createElement("url");
    url.setAttribute("parsed", parsed);
    url.setAttribute("login", "guest");
    url.setAttribute("password", "secret");
    element.appendChild(url);
    return element;
}

struct Fetch {
    explicit Fetch(const QString &url)
        : receiver(nullptr, task(document, url)), pictures(&receiver, &HttpPictureReceiver::pixmapReady),
          ends(&receiver, &HttpPictureReceiver::finished)
    {
    }

    QDomDocument document;
    HttpPictureReceiver receiver;
    QSignalSpy pictures;
    QSignalSpy ends;
};

} // namespace

Q_DECLARE_METATYPE(Server::Answer)

class TestStillPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAddresses_data();
    void readsAddresses();
    void fetches_data();
    void fetches();
    void sendsTheLoginToTheFirstHostOnly();
    void tellsWhenItWasTaken_data();
    void tellsWhenItWasTaken();
    void mayBeDestroyedWhileFetching();
    void limitsTheWorkOfDecoding();
};

void TestStillPictures::readsAddresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url");
    const auto row = [](const char *text, const char *url) {
        QTest::addRow("%s", text) << QString(text) << QString(url);
    };
    row("http://10.0.0.5/a?b=-1", "http://10.0.0.5/a?b=-1");
    row(" 10.0.0.5/a ", "http://10.0.0.5/a");
    row("10.0.0.5:-25536/a:-7", "http://10.0.0.5:40000/a:-7");
    row("https://[::1]:-1?a", "https://[::1]:65535?a");
    row("user:-5@camera/a", "http://user:-5@camera/a");
    row("camera:-32769", "");
    row("camera:65536", "");
    row("camera:0/a", "");
    row("ftp://camera/a", "");
    row("file:///etc/passwd", "");
    row("data:image/jpeg,x", "");
    row("", "");
}

void TestStillPictures::readsAddresses()
{
    QFETCH(QString, text);
    QFETCH(QString, url);
    QCOMPARE(pictureUrl(text).toString(), url);
}

void TestStillPictures::fetches_data()
{
    QTest::addColumn<Server::Answer>("give");
    QTest::addColumn<int>("requests");    // 0: Qt may repeat a request whose connection ends early
    QTest::addColumn<QString>("problem"); // empty when a picture comes
    const auto row = [](const char *name, int requests, const char *problem, const Server::Answer &give) {
        QTest::newRow(name) << give << requests << QString(problem);
    };
    const auto always = [](const QByteArray &bytes) {
        return [bytes](QTcpSocket &client, const QByteArray &, int) { client.write(bytes); };
    };
    const auto locked = [](const QByteArray &asks, bool (*isRight)(const QByteArray &)) {
        return [asks, isRight](QTcpSocket &client, const QByteArray &request, int) {
            client.write(isRight(request) ? answer(jpeg()) : answer("no", asks));
        };
    };
    const auto never = [](const QByteArray &) { return false; };
    const auto redirect = [](const QByteArray &where) {
        return answer({}, "302 Found\r\nLocation: " + where);
    };

    row("a picture", 1, "", always(answer(jpeg())));
    row("until the connection ends", 0, "", [](QTcpSocket &client, const QByteArray &, int) {
        client.write("HTTP/1.0 200 OK\r\n\r\n" + jpeg());
        client.disconnectFromHost();
    });
    row("Basic", 2, "", locked(AskBasic, isBasic));
    row("Digest", 2, "", locked(AskDigest, isDigest));
    row("either", 2, "", locked(AskBasic + AskDigest.mid(6), isDigest));
    row("Basic, refused", 2, "Login refused", locked(AskBasic, never));
    row("Digest, refused", 2, "Login refused", locked(AskDigest, never));
    row("an unknown way to log in", 1, "Login refused", locked("401 No\r\nWWW-Authenticate: Odd", never));
    row("forbidden", 1, "Login refused", always(answer("no", "403 No")));
    row("not there", 1, "Picture not at this address", always(answer("no", "404 No")));
    row("out of order", 1, "Recorder reports error 503", always(answer("no", "503 No")));
    row("a text", 1, "Not a picture", always(answer("<html>Hello</html>")));
    row("another format", 1, "Not a picture", always(answer("GIF89a" + jpeg())));
    row("nothing", 1, "Not a picture", always(answer({})));
    row("a huge claim", 1, "Not a picture", always(answer(claiming(jpeg(), 65000, 65000))));
    row("half a picture", 0, "Not a picture", [](QTcpSocket &client, const QByteArray &, int) {
        client.write("HTTP/1.0 200 OK\r\n\r\n" + jpeg().first(500));
        client.disconnectFromHost();
    });
    row("close in the middle", 0, "Connection lost", [](QTcpSocket &client, const QByteArray &, int) {
        client.write(answer(jpeg()).chopped(100));
        client.disconnectFromHost();
    });
    row("no HTTP", 0, "Connection lost", [](QTcpSocket &client, const QByteArray &, int) {
        client.write("LENGTH=18\r\nVORN_ANSWER=ERROR\r\n\r\n");
        client.disconnectFromHost();
    });
    row("silence", 1, "No answer in time", [](QTcpSocket &, const QByteArray &, int) {});
    row("drops", 1, "No answer in time", [](QTcpSocket &client, const QByteArray &, int) {
        client.write("HTTP/1.1 200 OK\r\n\r\n");
        auto *drip = new QTimer(&client);
        connect(drip, &QTimer::timeout, &client, [&client] { client.write("x"); });
        drip->start(20);
    });
    const auto flood = [](const QByteArray &head) {
        return [head](QTcpSocket &client, const QByteArray &, int) {
            client.write("HTTP/1.1 " + head + "\r\n\r\n");
            const auto pour = [&client] {
                if (client.bytesToWrite() < 1'000'000)
                    client.write(QByteArray(1'000'000, 'x'));
            };
            connect(&client, &QTcpSocket::bytesWritten, &client, pour);
            pour();
        };
    };
    row("no end", 1, "Picture too large", flood("200 OK"));
    row("no end of a refusal", 1, "No answer in time", flood(AskBasic));
    row("too much at once", 1, "Picture too large", always(answer(QByteArray(MaxStillBytes + 1, 'x'))));
    row("another place", 2, "", [=](QTcpSocket &client, const QByteArray &request, int) {
        client.write(request.startsWith("GET /p ") ? redirect("/q") : answer(jpeg()));
    });
    row("round and round", 4, "Picture not at this address", always(redirect("/p")));
    row("off to a file", 1, "Picture not at this address", always(redirect("file:///etc/passwd")));
}

void TestStillPictures::fetches()
{
    QFETCH(Server::Answer, give);
    QFETCH(int, requests);
    QFETCH(QString, problem);
    // The proxy of the application must not be used for this computer.
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, "127.0.0.1", 1));
    Server server(give);
    Fetch fetch(server.url());
    // Short ones only where they are to be reached: on a busy machine others might reach them, too.
    if (problem == "No answer in time")
        fetch.receiver.setTimeLimits(150ms, 300ms);
    QVERIFY(!fetch.receiver.isFinished());
    QVERIFY(fetch.ends.wait(10'000));
    QVERIFY(fetch.receiver.isFinished());
    QCOMPARE(fetch.receiver.problem(), problem);
    QCOMPARE(fetch.pictures.size(), problem.isEmpty() ? 1 : 0);
    QCOMPARE(server.requests, requests > 0 ? requests : server.requests);
    if (problem.isEmpty())
        QCOMPARE(fetch.pictures[0][0].value<QPixmap>().size(), QSize(64, 48));
    AWAIT_COMPARE(server.closed, server.connections);
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
}

void TestStillPictures::sendsTheLoginToTheFirstHostOnly()
{
    QByteArray told;
    Server other([&](QTcpSocket &client, const QByteArray &request, int) {
        told += request;
        client.write(answer("no", AskBasic));
    });
    Server server([&](QTcpSocket &client, const QByteArray &, int) {
        client.write(answer(
            {}, "302 Found\r\nLocation: http://127.0.0.1:" + QByteArray::number(other.serverPort()) + "/p"));
    });
    Fetch fetch(server.url());
    QVERIFY(fetch.ends.wait(10'000));
    QCOMPARE(fetch.receiver.problem(), "Login refused");
    QVERIFY(told.startsWith("GET /p") && !told.contains("Authorization"));
}

void TestStillPictures::tellsWhenItWasTaken_data()
{
    const test::TestTable<QByteArray, QByteArray, QDateTime> row("picture", "lines", "time");
    const QDate day(2026, 11, 21);
    const QTime evening(23, 59, 58);
    const QDateTime ofAnswer(day, evening, Qt::UTC);
    const QByteArray modified = "\r\nLast-Modified: Sat, 21 Nov 2026 23:59:58 GMT";
    const QByteArray sent = "\r\nDate: Sun, 22 Nov 2026 23:59:58 GMT";
    row("the answer says so", jpeg(), sent + modified, ofAnswer);
    row("the answer says when it was sent", jpeg(), sent, {});
    row("the answer says nothing", jpeg(), "", {});
    row("the answer says nothing that can be read", jpeg(), "\r\nDate: yesterday\r\nLast-Modified: 0", {});
    row("the picture says so", takenAt("2026:11:21 23:59:58"), "", QDateTime(day, evening));
    row("the picture says so, most significant bytes first",
        takenAt("2026:11:21 23:59:58", {}, QDataStream::BigEndian), "", QDateTime(day, evening));
    row("the picture says so with its zone", takenAt("2026:11:22 01:59:58", "+02:00"), "", ofAnswer);
    row("the zone is not known", takenAt("2026:11:21 23:59:58", "   :  "), "", QDateTime(day, evening));
    row("both say so", takenAt("2026:11:20 23:59:58"), modified, QDateTime(day.addDays(-1), evening));
    row("the camera has no clock", takenAt("    :  :     :  :  "), modified, ofAnswer);
    row("the note in the picture is damaged", takenAt("2026:11:20 23:59:58").replace("\x69\x87", "\x69\x88"),
        modified, ofAnswer);
    row("the note leads behind its end",
        takenAt("2026:11:20 23:59:58")
            .replace(QByteArray("\x1A\0\0\0", 4), QByteArray("\xFF\xFF\xFF\xFF", 4)),
        modified, ofAnswer);
}

void TestStillPictures::tellsWhenItWasTaken()
{
    QFETCH(QByteArray, picture);
    QFETCH(QByteArray, lines);
    Server server([&](QTcpSocket &client, const QByteArray &, int) {
        client.write(answer(picture, "200 OK" + lines));
    });
    Fetch fetch(server.url());
    AWAIT_COMPARE(fetch.ends.size(), 1);
    QCOMPARE(fetch.pictures.size(), 1);
    QTEST(fetch.receiver.pictureTime(), "time");
}

void TestStillPictures::mayBeDestroyedWhileFetching()
{
    Server server(
        [](QTcpSocket &client, const QByteArray &, int) { client.write(answer(jpeg()).chopped(100)); });
    auto fetch = std::make_unique<Fetch>(server.url());
    AWAIT_COMPARE(server.requests, 1);
    fetch.reset();
    AWAIT_COMPARE(server.closed, 1);

    Fetch wrong("ftp://camera/p");
    QVERIFY(wrong.receiver.isFinished());
    QVERIFY(wrong.ends.wait());
    QCOMPARE(wrong.receiver.problem(), "Wrong address of the picture");
}

void TestStillPictures::limitsTheWorkOfDecoding()
{
    const auto decode = [](Passes passes, int width, int height) {
        return decodeStillPicture(claiming(jpeg({64, 48}, passes), width, height));
    };
    QCOMPARE(decode(Passes::One, 5000, 5000).size(), QSize(2500, 2500));
    QVERIFY(decode(Passes::One, 6000, 6000).isNull()); // more pixels than a picture may have
    // Each scan may decode all pixels.
    QCOMPARE(decode(Passes::Many, 2000, 2000).size(), QSize(2000, 2000));
    QVERIFY(decode(Passes::Many, 5000, 5000).isNull());
}

QTEST_MAIN(TestStillPictures)
#include "tst_stillpictures.moc"
