#include "RawClient.h"

#include "recorder/RecorderServer.h"
#include "recorder/clients/HttpAccess.h"
#include "support/TestTable.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace recorder;
using paravue::test::TestTable;

namespace
{

QByteArray md5(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

/// The Authorization field of a correct client.
QByteArray digestLogin(const QByteArray &password, const QByteArray &nonce, const QByteArray &count,
                       const QByteArray &target)
{
    const QByteArray response = md5(md5("admin:recorder:" + password) + ':' + nonce + ':' + count +
                                    ":c,\"c:auth:" + md5("GET:" + target));
    return "Authorization: Digest username=\"admin\", realm=\"recorder\", nonce=\"" + nonce + "\", uri=\"" +
           target + "\", qop=auth, nc=" + count + ", cnonce=\"c,\\\"c\", response=\"" + response +
           "\", algorithm=MD5\r\n";
}

} // namespace

class TestRecorderHttp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_server.reset(); }

    void answersRequests_data();
    void answersRequests();
    void checksDigestLogins_data();
    void checksDigestLogins();
    void limitsNonces();

private:
    QByteArray ask(const QByteArray &head);
    QByteArray freshNonce();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderServer> m_server;
};

void TestRecorderHttp::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<RecorderServer>(m_folder->path());
    m_server->setDrainTimeout(50);
    QVERIFY(m_server->listen());
}

/// The answer to a request for the snapshot with these fields.
QByteArray TestRecorderHttp::ask(const QByteArray &head)
{
    RawClient client(m_server->port());
    client.send("GET /snapshot.jpg HTTP/1.1\r\nHost: r\r\n" + head + "\r\n");
    return client.receiveUntilClosed();
}

QByteArray TestRecorderHttp::freshNonce()
{
    const QString challenge = QString::fromLatin1(ask({}));
    return QRegularExpression("nonce=\"([0-9a-f]{32})\"").match(challenge).captured(1).toLatin1();
}

void TestRecorderHttp::answersRequests_data()
{
    const QByteArray host = " HTTP/1.1\r\nHost: recorder\r\n";
    const QByteArray basic = "Authorization: Basic " + QByteArray("admin:admin").toBase64() + "\r\n";
    const QByteArray jpeg = "\xFF\xD8\xFF";
    const TestTable<QByteArray, QByteArray, QByteArray> row("request", "status", "bodyBegins");
    row("picture", "GET /snapshot.jpg" + host + basic, "200 OK", jpeg);
    row("overview", "GET /overview.jpg" + host + basic, "200 OK", jpeg);
    row("overview without login", "GET /overview.jpg" + host, "401 Unauthorized", "401");
    row("with a query", "GET /snapshot.jpg?t=5" + host + basic, "200 OK", jpeg);
    row("HTTP/1.0", "GET /snapshot.jpg HTTP/1.0\r\n" + basic, "200 OK", jpeg);
    row("names in other letters",
        "GET /snapshot.jpg HTTP/1.1\r\nHOST:r\r\n" + basic.toLower().left(21) + basic.mid(21), "200 OK",
        jpeg);
    row("head", "HEAD /snapshot.jpg" + host + basic, "200 OK", "");
    row("digest of the password",
        "GET /snapshot.jpg" + host + "Authorization: Basic " + ("admin:" + md5("admin")).toBase64() + "\r\n",
        "200 OK", jpeg);
    row("no login", "GET /snapshot.jpg" + host, "401 Unauthorized", "401");
    row("wrong password",
        "GET /snapshot.jpg" + host + "Authorization: Basic " + QByteArray("admin:x").toBase64() + "\r\n",
        "401 Unauthorized", "401");
    row("no password", "GET /snapshot.jpg" + host + "Authorization: Basic !!\r\n", "401 Unauthorized", "401");
    row("other path", "GET /" + host + basic, "404 Not Found", "404");
    row("other method", "POST /snapshot.jpg" + host + "Content-Length: 4\r\n", "405 Method Not Allowed",
        "405");
    row("no host", "GET /snapshot.jpg HTTP/1.1\r\n" + basic, "400 Bad Request", "400");
    row("two hosts", "GET /snapshot.jpg" + host + "Host: other\r\n", "400 Bad Request", "400");
    row("folded field", "GET /snapshot.jpg" + host + "X: a\r\n b\r\n", "400 Bad Request", "400");
    row("no version", "GET /snapshot.jpg\r\n", "400 Bad Request", "400");
    row("other version", "GET /snapshot.jpg HTTP/2.0\r\nHost: r\r\n", "400 Bad Request", "400");
    row("oversize", "GET /snapshot.jpg" + host + "X: " + QByteArray(9000, 'x') + "\r\n",
        "431 Request Header Fields Too Large", "431");
}

void TestRecorderHttp::answersRequests()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, status);
    QFETCH(QByteArray, bodyBegins);
    RawClient client(m_server->port());
    client.send(request + "\r\n");
    const QByteArray answer = client.receiveUntilClosed();
    const qsizetype end = answer.indexOf("\r\n\r\n");
    const QString head = QString::fromLatin1(answer.left(end + 2));
    const QByteArray body = answer.mid(end + 4);
    QVERIFY2(head.startsWith("HTTP/1.1 " + status + "\r\n"), qPrintable(head));
    QVERIFY(head.contains("\r\nConnection: close\r\n"));
    const auto length = QRegularExpression("\r\nContent-Length: (\\d+)\r\n").match(head);
    QVERIFY2(length.hasMatch(), qPrintable(head));
    QVERIFY(body.startsWith(bodyBegins));
    if (request.startsWith("HEAD"))
        QVERIFY(body.isEmpty() && length.captured(1).toInt() > 1000);
    else
        QCOMPARE(body.size(), length.captured(1).toInt());
    QCOMPARE(head.contains("\r\nWWW-Authenticate: Digest realm="), status.startsWith("401"));
    QCOMPARE(head.contains("\r\nWWW-Authenticate: Basic realm="), status.startsWith("401"));
}

void TestRecorderHttp::checksDigestLogins_data()
{
    const TestTable<QByteArray, QByteArray, QByteArray, QByteArray> row("password", "count", "target",
                                                                        "status");
    row("password", "admin", "00000001", "/snapshot.jpg", "200");
    row("its digest", md5("admin"), "00000001", "/snapshot.jpg", "200");
    row("wrong password", "root", "00000001", "/snapshot.jpg", "401");
    row("made for another target", "admin", "00000001", "/other.jpg", "401");
    row("count used before", "admin", "00000000", "/snapshot.jpg", "401");
    row("nonce that nobody gave", "admin", "unknown", "/snapshot.jpg", "401");
}

void TestRecorderHttp::checksDigestLogins()
{
    QFETCH(QByteArray, password);
    QFETCH(QByteArray, count);
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, status);
    m_server->setSnapshotLogins(HttpAccess::Digest);
    QVERIFY(!ask({}).contains("Basic"));
    const bool isUnknown = count == "unknown";
    const QByteArray nonce = isUnknown ? QByteArray(32, '0') : freshNonce();
    QCOMPARE(nonce.size(), 32);
    const QByteArray answer =
        ask(digestLogin(password, nonce, isUnknown ? QByteArray("00000001") : count, target));
    QVERIFY2(answer.startsWith("HTTP/1.1 " + status), answer.left(200));
    QCOMPARE(answer.contains("stale=true"), isUnknown || count == "00000000");
}

void TestRecorderHttp::limitsNonces()
{
    const QByteArray target = "/snapshot.jpg";
    const QByteArray first = freshNonce();
    QVERIFY(ask(digestLogin("admin", first, "00000001", target)).startsWith("HTTP/1.1 200"));
    QVERIFY(ask(digestLogin("admin", first, "00000001", target)).contains("stale=true"));
    QVERIFY(ask(digestLogin("admin", first, "00000002", target)).startsWith("HTTP/1.1 200"));
    for (int i = 0; i < HttpAccess::MaxNonces; ++i)
        freshNonce();
    QVERIFY(ask(digestLogin("admin", first, "00000003", target)).contains("stale=true"));
}

QTEST_GUILESS_MAIN(TestRecorderHttp)
#include "tst_recorder_http.moc"
