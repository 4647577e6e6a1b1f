#include "StreamFeed.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <ctime>
#include <memory>
#include <pthread.h>

namespace paravue::bench
{
namespace
{

constexpr int PollMilliseconds = 1;
constexpr qsizetype PieceSize = 256 * 1024;

} // namespace

StreamFeed::StreamFeed()
{
    // The first socket initialises objects of the application, so it must not be made in the thread.
    QTcpSocket().abort();
    m_thread = std::thread([this] { run(); });
}

StreamFeed::~StreamFeed()
{
    m_stopped = true;
    m_thread.join();
    delete m_task.exchange(nullptr);
}

QDomElement StreamFeed::element()
{
    QDomDocument document;
    QDomElement task = document.createElement(QStringLiteral("timetask"));
    QDomElement url = document.createElement(QStringLiteral("url"));
    const quint16 port = m_port.get_future().get();
    url.setAttribute(QStringLiteral("parsed"), QStringLiteral("127.0.0.1:%1").arg(port));
    task.appendChild(url);
    return task;
}

void StreamFeed::send(const QByteArray &start, const QByteArray &again, int times)
{
    delete m_task.exchange(new Task{start, again, times, {}, {}});
}

void StreamFeed::play(const QByteArray &start, const QList<QByteArray> &frames,
                      std::chrono::milliseconds interval)
{
    delete m_task.exchange(new Task{start, {}, 0, frames, interval});
}

double StreamFeed::processorSeconds()
{
    clockid_t clock{};
    timespec time{};
    if (pthread_getcpuclockid(m_thread.native_handle(), &clock) != 0 || clock_gettime(clock, &time) != 0)
        qFatal("no processor time");
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

void StreamFeed::run()
{
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost))
        qFatal("cannot listen");
    m_port.set_value(server.serverPort());
    while (!m_stopped && !server.hasPendingConnections())
        server.waitForNewConnection(PollMilliseconds);
    const std::unique_ptr<QTcpSocket> socket(server.nextPendingConnection());
    if (socket)
        serve(*socket);
}

void StreamFeed::serve(QTcpSocket &socket)
{
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    QByteArray login;
    while (!m_stopped && !login.endsWith("PASS=\r\n")) {
        socket.waitForReadyRead(PollMilliseconds);
        login += socket.readAll();
    }
    write(socket, "LENGTH=16\r\nVORN_ANSWER=OK\r\n");
    while (!m_stopped) {
        const std::unique_ptr<const Task> task(m_task.exchange(nullptr));
        if (!task) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            continue;
        }
        bool goesOn = write(socket, task->start);
        for (int done = 0; goesOn && done != task->times; ++done)
            goesOn = write(socket, task->again);
        if (goesOn && !task->frames.isEmpty())
            play(socket, *task);
    }
}

void StreamFeed::play(QTcpSocket &socket, const Task &task)
{
    auto due = std::chrono::steady_clock::now();
    for (qsizetype next = 0; write(socket, task.frames[next]); next = (next + 1) % task.frames.size()) {
        due += task.interval;
        std::this_thread::sleep_until(due);
        for (; m_isPaused && !m_stopped; due = std::chrono::steady_clock::now())
            std::this_thread::sleep_for(task.interval);
    }
}

bool StreamFeed::write(QTcpSocket &socket, const QByteArray &bytes)
{
    for (qsizetype at = 0; at < bytes.size(); at += PieceSize) {
        socket.write(bytes.mid(at, PieceSize));
        while (socket.bytesToWrite() > 0 && !m_stopped && socket.state() == QAbstractSocket::ConnectedState)
            socket.waitForBytesWritten(PollMilliseconds);
        if (m_stopped || socket.state() != QAbstractSocket::ConnectedState)
            return false;
    }
    return true;
}

} // namespace paravue::bench
