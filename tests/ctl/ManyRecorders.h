#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <vector>

namespace paravue::test
{

/// Simulated recorders "r1", "r2" and so on in other processes, and an inventory of them.
class ManyRecorders
{
public:
    explicit ManyRecorders(int count, int delay = 0)
    {
        for (int first = 1; first <= count; first += MostOfProcess)
            start(std::min(count - first + 1, MostOfProcess), delay, first);
        QByteArray inventoryText;
        for (const auto &process : m_processes)
            m_areListening = awaitListening(*process, inventoryText) && m_areListening;
        QFile file(inventory());
        m_areListening = m_areListening && file.open(QIODevice::WriteOnly) &&
                         file.write(inventoryText) == inventoryText.size();
    }
    ~ManyRecorders()
    {
        for (const auto &process : m_processes)
            process->closeWriteChannel();
        for (const auto &process : m_processes)
            process->waitForFinished();
    }

    bool areListening() const { return m_areListening; }
    QString inventory() const { return m_folder.filePath("inventory.ini"); }
    /// The files of the recorder \a name, which it reads at each request.
    QString folder(const QString &name) const { return m_folder.filePath(name); }
    QString address(int number) const { return m_addresses.value(number); }

private:
    /// A process waits for all its sockets anew after each request, and a thousand of them would take it
    /// longer than the answers do.
    static constexpr int MostOfProcess = 100;

    void start(int count, int delay, int first)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(RECORDERS_PROGRAM, {QString::number(count), m_folder.path(), QString::number(delay),
                                           QString::number(first)});
        m_processes.push_back(std::move(process));
    }

    bool awaitListening(QProcess &process, QByteArray &inventoryText)
    {
        QByteArray said;
        while (!said.endsWith("# listening\n") && process.waitForReadyRead(60'000))
            said += process.readAllStandardOutput().replace('\r', "");
        for (const QByteArray &line : said.split('\n')) {
            if (line.startsWith("address = "))
                m_addresses << QString::fromUtf8(line.sliced(10));
        }
        inventoryText += said;
        return said.endsWith("# listening\n");
    }

    QTemporaryDir m_folder;
    std::vector<std::unique_ptr<QProcess>> m_processes;
    QStringList m_addresses;
    bool m_areListening = true;
};

} // namespace paravue::test
