// The peer of "paravue-ctl get": a program that fetches the files of recorders on this computer with plain
// sockets, so many at once, and prints one value of each.
//
// Usage: control_peer JOBS PORT...

#include "PlainClient.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <deque>

namespace
{

using paravue::bench::PlainClient;

QByteArray addressIn(const QByteArray &net)
{
    for (const QByteArray &line : net.split('\n')) {
        if (line.startsWith("IP="))
            return line.sliced(3).trimmed();
    }
    return {};
}

class PeerRun : public QObject
{
public:
    PeerRun(int jobs, std::deque<quint16> ports) : m_ports(std::move(ports))
    {
        for (int job = 0; job < jobs; ++job)
            beginNext();
    }

private:
    void beginNext()
    {
        if (m_ports.empty()) {
            if (m_running == 0)
                QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
            return;
        }
        ++m_running;
        auto *client = new PlainClient("admin", "admin", m_ports.front());
        client->setParent(this);
        m_ports.pop_front();
        connect(client, &PlainClient::done, this, [this, client] {
            QFile file(client->pathOf("net"));
            if (!file.open(QIODevice::ReadOnly))
                qFatal("There is no file");
            std::printf("net/untitled/IP  %s\n", addressIn(file.readAll()).constData());
            client->deleteLater();
            --m_running;
            beginNext();
        });
        client->fetch();
    }

    std::deque<quint16> m_ports;
    int m_running = 0;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::deque<quint16> ports;
    for (int i = 2; i < argc; ++i)
        ports.push_back(quint16(std::atoi(argv[i])));
    const PeerRun run(std::atoi(argv[1]), std::move(ports));
    return QCoreApplication::exec();
}
