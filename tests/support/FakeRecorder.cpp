#include "FakeRecorder.h"

#include <QTcpSocket>
#include <QTimer>

namespace paravue::test
{

namespace
{

struct FetchStep {
    const char *request;
    const char *file;
};

constexpr FetchStep FetchSteps[] = {
    {"GET SETUP\r\n", "interface"},  {"GET CONFIG\r\n", "streams"},      {"GET NET CONFIG\r\n", "net"},
    {"GET TIME CONFIG\r\n", "time"}, {"GET TIMER CONFIG\r\n", "timers"}, {"GET SOFT CONFIG\r\n", "soft"},
    {"GET DISK CONFIG\r\n", "disk"}, {"GET USER CONFIG\r\n", "users"},   {"GET STATE CONFIG\r\n", "state"},
};

QString printable(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.left(200).toPercentEncoding(" =:/[]'\"#!{}<>"));
}

} // namespace

FakeRecorder::FakeRecorder()
{
    connect(&m_server, &QTcpServer::newConnection, this, &FakeRecorder::accept);
    if (!m_server.listen(QHostAddress::LocalHost))
        m_problem = m_server.errorString();
    startConnection();
}

QString FakeRecorder::address(const QString &login, const QString &password) const
{
    // A client reads the port as a signed 16-bit number, and the system likes to pick ports above 32767.
    return QString("%1:%2@127.0.0.1:%3").arg(login, password, QString::number(qint16(port())));
}

FakeRecorder &FakeRecorder::startConnection()
{
    m_connections.append(Connection());
    return *this;
}

FakeRecorder &FakeRecorder::add(const Step &step)
{
    m_connections.last().steps.append(step);
    return *this;
}

FakeRecorder &FakeRecorder::sendInPieces(const QByteArray &bytes, qsizetype size)
{
    for (qsizetype i = 0; i < bytes.size(); i += size)
        send(bytes.mid(i, size));
    return *this;
}

FakeRecorder &FakeRecorder::login(const QString &login, const QString &password)
{
    expect("\x04LOGIN=" + login.toUtf8() + "\r\nPASS=" + password.toUtf8() + "\r\n");
    return send("LENGTH=16\r\nVORN_ANSWER=OK\r\n");
}

FakeRecorder &FakeRecorder::reply(const QByteArray &request, const QByteArray &body)
{
    return expect(request).send(frame(body));
}

FakeRecorder &FakeRecorder::fetchOf(const QMap<QString, QByteArray> &bodies)
{
    for (const FetchStep &step : FetchSteps)
        reply(step.request, bodies.value(step.file));
    return *this;
}

QByteArray FakeRecorder::frame(const QByteArray &body, const QByteArray &answer)
{
    return "LENGTH=" + QByteArray::number(body.size() + answer.size()) + "\r\n" + body + answer;
}

QString FakeRecorder::problem() const
{
    if (!m_problem.isEmpty())
        return m_problem;
    for (const Connection &connection : m_connections) {
        if (connection.nextStep < connection.steps.size()) {
            const Step &step = connection.steps.at(connection.nextStep);
            return QString("Step %1 was not played: %2 (received so far: %3)")
                .arg(QString::number(connection.nextStep), printable(step.bytes),
                     printable(connection.received.mid(connection.matched)));
        }
        if (connection.matched < connection.received.size())
            return "Received too much: " + printable(connection.received.mid(connection.matched));
    }
    return {};
}

void FakeRecorder::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        const int index = m_accepted++;
        if (index >= m_connections.size()) {
            fail(index, "One connection too many");
            socket->abort();
            return;
        }
        m_connections[index].socket = socket;
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QTcpSocket::readyRead, this, [this, index] {
            m_connections[index].received += m_connections[index].socket->readAll();
            play(index);
        });
        connect(socket, &QTcpSocket::disconnected, this, [this, index] {
            m_connections[index].closed = true;
            play(index);
        });
        play(index);
    }
}

void FakeRecorder::play(int index)
{
    const Connection &connection = m_connections.at(index);
    while (connection.nextStep < connection.steps.size()) {
        const bool sends = connection.steps.at(connection.nextStep).kind == Step::Send;
        if (!playStep(index))
            return;
        ++m_connections[index].nextStep;
        if (!sends)
            continue;
        // What comes next may be another piece; the client, in the same event loop, shall see this one alone.
        connection.socket->flush();
        QTimer::singleShot(1, this, [this, index] { play(index); });
        return;
    }
}

/// True when the next step is done.
bool FakeRecorder::playStep(int index)
{
    Connection &connection = m_connections[index];
    const Step &step = connection.steps.at(connection.nextStep);
    switch (step.kind) {
    case Step::Expect: {
        const QByteArray pending = connection.received.mid(connection.matched, step.bytes.size());
        if (!step.bytes.startsWith(pending)) {
            fail(index, QString("Expected %1, received %2").arg(printable(step.bytes), printable(pending)));
            connection.socket->abort();
            return false;
        }
        if (pending.size() < step.bytes.size())
            return false;
        connection.matched += step.bytes.size();
        return true;
    }
    case Step::Send:
        connection.socket->write(step.bytes);
        return true;
    case Step::Close:
        connection.socket->disconnectFromHost();
        return true;
    case Step::ExpectClosed:
        return connection.closed;
    }
    return false;
}

void FakeRecorder::fail(int index, const QString &what)
{
    if (m_problem.isEmpty())
        m_problem = QString("Connection %1: %2").arg(QString::number(index), what);
}

} // namespace paravue::test
