#pragma once

#include <QObject>
#include <QTemporaryDir>
#include <QThread>

#include <memory>

namespace recorder
{
class RecorderServer;
}

namespace paravue::bench
{

/// The recorder simulator with its shipped model, in a thread of its own as a recorder is a computer of its
/// own.
class SimulatedRecorder
{
public:
    /// Each file has its content \a times over; every reply comes \a replyDelay milliseconds late.
    explicit SimulatedRecorder(int times = 1, int replyDelay = 0);
    ~SimulatedRecorder();

    quint16 port() const { return m_port; }
    /// login:password\@host:port for a client of the library.
    QString address() const;

    static constexpr auto Login = "admin";
    static constexpr auto Password = "admin";

private:
    template <class Work>
    void runInThread(Work work);

    QTemporaryDir m_data;
    QThread m_thread;
    QObject m_context; // lives in the thread
    std::unique_ptr<recorder::RecorderServer> m_server;
    quint16 m_port = 0;
};

} // namespace paravue::bench
