#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTcpSocket>

#include <map>
#include <memory>
#include <vector>

class QTemporaryFile;

namespace paravue::bench
{

/// The peer of OrbNetSetup: what somebody would write by hand who needs the files of one known recorder and
/// nothing else. It fetches the nine files, unpacks the first, saves each with a copy, and sends back those
/// that the recorder takes. It trusts the recorder, knows no other list of files and keeps no values.
class PlainClient : public QObject
{
    Q_OBJECT

public:
    PlainClient(const QByteArray &login, const QByteArray &password, quint16 port);
    ~PlainClient() override;

    void fetch();
    void send();
    /// The same with the system's own calls, each of which waits until it is done.
    void sendBlocking() const;

    /// Where the file \a name was saved.
    QString pathOf(const QString &name) const { return m_paths.at(name); }
    qint64 receivedBytes() const { return m_receivedBytes; }

Q_SIGNALS:
    void done();

private:
    enum class Task { Fetch, Send };

    void start(Task task);
    void readReply();
    void nextRequest();
    void sendFile(const QByteArray &request, const QString &name);
    QByteArray requestWithFile(const QByteArray &request, const QString &name) const;
    void saveReply(const QByteArray &body);
    void save(const QString &name, const QByteArray &content);

    QByteArray m_login;
    QByteArray m_password;
    quint16 m_port;
    QTcpSocket m_socket;
    QByteArray m_buffer;
    Task m_task = Task::Fetch;
    bool m_loggedIn = false;
    size_t m_index = 0;
    qint64 m_receivedBytes = 0;
    std::map<QString, QString> m_paths;
    std::vector<std::unique_ptr<QTemporaryFile>> m_files;
};

} // namespace paravue::bench
