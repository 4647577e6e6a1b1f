#pragma once

#include <QByteArray>
#include <QDomElement>
#include <QList>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

class QTcpSocket;

namespace paravue::bench
{

/// A recorder's video service for one receiver, in a thread of its own. It sends as fast as the receiver
/// reads.
class StreamFeed
{
public:
    StreamFeed();
    ~StreamFeed();
    Q_DISABLE_COPY_MOVE(StreamFeed)

    /// The description of a receiver that connects to this service.
    QDomElement element();
    /// Sends \a start and then \a again \a times, or without end.
    void send(const QByteArray &start, const QByteArray &again = {}, int times = 0);
    static constexpr int Endless = -1;
    /// Sends \a start and then the \a frames again and again, one in each \a interval.
    void play(const QByteArray &start, const QList<QByteArray> &frames, std::chrono::milliseconds interval);
    /// Interrupts play().
    void setPaused(bool isPaused) { m_isPaused = isPaused; }
    /// The processor time of the service so far.
    double processorSeconds();

private:
    struct Task {
        QByteArray start;
        QByteArray again;
        int times = 0;
        QList<QByteArray> frames;
        std::chrono::milliseconds interval{0};
    };

    void run();
    void serve(QTcpSocket &socket);
    void play(QTcpSocket &socket, const Task &task);
    bool write(QTcpSocket &socket, const QByteArray &bytes);

    std::promise<quint16> m_port;
    std::atomic<const Task *> m_task = nullptr;
    std::atomic<bool> m_stopped = false;
    std::atomic<bool> m_isPaused = false;
    std::thread m_thread;
};

} // namespace paravue::bench
