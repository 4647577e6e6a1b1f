#include "SimulatedRecorder.h"

#include "recorder/RecorderServer.h"

#include <QFile>

namespace paravue::bench
{

namespace
{

void repeatContent(const QString &path, int times)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        qFatal("Cannot open %s", qPrintable(path));
    const QByteArray content = file.readAll();
    file.resize(0);
    file.write(content.repeated(times));
}

} // namespace

SimulatedRecorder::SimulatedRecorder(int times, int replyDelay)
{
    m_context.moveToThread(&m_thread);
    m_thread.start();
    runInThread([&] {
        m_server = std::make_unique<recorder::RecorderServer>(m_data.path());
        if (!m_server->listen())
            qFatal("The recorder does not start: %s", qPrintable(m_server->errorString()));
        m_port = m_server->port();
        m_server->setReplyDelay(replyDelay);
        if (times == 1)
            return;
        for (const char *name :
             {"interface", "streams", "net", "time", "timers", "soft", "disk", "users", "state"})
            repeatContent(m_server->filePath(name), times);
    });
}

SimulatedRecorder::~SimulatedRecorder()
{
    runInThread([this] { m_server.reset(); });
    m_thread.quit();
    m_thread.wait();
}

/// The server and its sockets belong to the thread in which they are made.
template <class Work>
void SimulatedRecorder::runInThread(Work work)
{
    QMetaObject::invokeMethod(&m_context, work, Qt::BlockingQueuedConnection);
}

QString SimulatedRecorder::address() const
{
    // Ports are read as signed 16-bit numbers.
    return QString("%1:%2@127.0.0.1:%3").arg(Login, Password, QString::number(qint16(m_port)));
}

} // namespace paravue::bench
