#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace paravue::test
{

/// Simulated recorders "r1", "r2" and so on in a second process, and an inventory of them.
class ManyRecorders
{
public:
    explicit ManyRecorders(int count, int delay = 0)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(RECORDERS_PROGRAM, {QString::number(count), m_folder.path(), QString::number(delay)});
        QByteArray said;
        while (!said.endsWith("# listening\n") && m_process.waitForReadyRead(60'000))
            said += m_process.readAllStandardOutput().replace('\r', "");
        for (const QByteArray &line : said.split('\n')) {
            if (line.startsWith("address = "))
                m_addresses << QString::fromUtf8(line.sliced(10));
        }
        QFile file(inventory());
        m_areListening = said.endsWith("# listening\n") && file.open(QIODevice::WriteOnly) &&
                         file.write(said) == said.size();
    }
    ~ManyRecorders()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    bool areListening() const { return m_areListening; }
    QString inventory() const { return m_folder.filePath("inventory.ini"); }
    /// The files of the recorder \a name, which it reads at each request.
    QString folder(const QString &name) const { return m_folder.filePath(name); }
    QString address(int number) const { return m_addresses.value(number); }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QStringList m_addresses;
    bool m_areListening = false;
};

} // namespace paravue::test
