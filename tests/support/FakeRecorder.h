#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>

class QTcpSocket;

namespace paravue::test
{

/// A recorder that plays a script: it expects exact bytes and sends exact bytes, good or bad.
///
/// It listens on the loopback interface in the caller's event loop. The script is written down before the
/// client connects; connections are played in the order in which startConnection() was called (the first one
/// is started already). At the end problem() tells whether the conversation went as written down.
class FakeRecorder : public QObject
{
    Q_OBJECT

public:
    FakeRecorder();

    quint16 port() const { return m_server.serverPort(); }
    /// login:password\@127.0.0.1:port
    QString address(const QString &login = "guest", const QString &password = "secret") const;

    FakeRecorder &startConnection();
    FakeRecorder &expect(const QByteArray &bytes) { return add({Step::Expect, bytes}); }
    FakeRecorder &send(const QByteArray &bytes) { return add({Step::Send, bytes}); }
    /// Each piece arrives alone, as what several send() pass on does.
    FakeRecorder &sendInPieces(const QByteArray &bytes, qsizetype size);
    FakeRecorder &close() { return add({Step::Close, {}}); }
    /// Waits until the client has closed the connection.
    FakeRecorder &expectClosed() { return add({Step::ExpectClosed, {}}); }

    /// The login of address() and its success frame.
    FakeRecorder &login(const QString &login = "guest", const QString &password = "secret");
    /// A request line, answered with \a body and OK.
    FakeRecorder &reply(const QByteArray &request, const QByteArray &body = {});
    /// The nine requests of a fetch, with the bodies that \a bodyOf gives for a file name.
    FakeRecorder &fetchOf(const QMap<QString, QByteArray> &bodies);

    /// A header line, \a body and \a answer.
    static QByteArray frame(const QByteArray &body, const QByteArray &answer = "VORN_ANSWER=OK\r\n");

    /// Everything that was received on connection number \a index.
    QByteArray received(int index = 0) const { return m_connections.value(index).received; }
    /// How many connections were made.
    int connectionCount() const { return m_accepted; }
    /// Empty when every step was played, every byte was expected and nothing else came.
    QString problem() const;

private:
    struct Step {
        enum Kind { Expect, Send, Close, ExpectClosed } kind;
        QByteArray bytes;
    };
    struct Connection {
        QList<Step> steps;
        qsizetype nextStep = 0;
        QByteArray received;
        qsizetype matched = 0; ///< bytes of received that steps have accounted for
        QTcpSocket *socket = nullptr;
        bool closed = false;
    };

    FakeRecorder &add(const Step &step);
    void accept();
    void play(int index);
    bool playStep(int index);
    void fail(int index, const QString &what);

    QList<Connection> m_connections;
    int m_accepted = 0;
    QString m_problem;
    QTcpServer m_server; // goes first: its sockets report their end
};

} // namespace paravue::test
