#include "recorder/Companion.h"

#include "recorder/files/RecorderText.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>

namespace recorder
{

namespace
{

constexpr qint64 MaxRequestBytes = 64;
constexpr int MaxClients = 32;
constexpr int ConnectLimitMs = 1000;

bool isAlive(const QString &server)
{
    QLocalSocket probe;
    probe.connectToServer(server);
    return probe.waitForConnected(ConnectLimitMs);
}

/// Without the line ends and tabs that separate names.
QString inOneLine(const QString &text)
{
    return text.simplified();
}

} // namespace

Companion::Companion(QObject *parent) : QObject(parent)
{
    // Other users must not see the names.
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.setMaxPendingConnections(MaxClients);
    connect(&m_server, &QLocalServer::newConnection, this, &Companion::acceptClients);
    setRecorders({});
}

QString Companion::standardServer()
{
    const QString name = QStringLiteral("paravue-companion");
#ifdef Q_OS_WIN
    return name;
#else
    // A folder of the user alone: in a common one, another user could take the name first.
    const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!session.isEmpty())
        return session + u'/' + name;
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Paravue/") + name;
#endif
}

bool Companion::listen(const QString &server)
{
    // Checked before, as removeServer() would take the name from a running companion.
    if (isAlive(server)) {
        m_error = RecorderText::tr("another companion is running");
        return false;
    }
#ifndef Q_OS_WIN
    const QFileInfo folder(QFileInfo(server).path());
    QDir().mkpath(folder.path());
    QDir().mkdir(folder.filePath(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
#endif
    QLocalServer::removeServer(server);
    const bool isListening = m_server.listen(server);
    m_error = m_server.errorString();
    return isListening;
}

QString Companion::errorString() const
{
    return m_error;
}

void Companion::setRecorders(const QMap<QString, QString> &names)
{
    QByteArray list;
    for (auto recorder = names.cbegin(); recorder != names.cend(); ++recorder)
        list += (inOneLine(recorder.key()) + u'\t' + inOneLine(*recorder) + u'\n').toUtf8();
    list += '\n';
    if (list == m_list)
        return;
    m_list = list;
    for (QLocalSocket *listener : std::as_const(m_listeners))
        listener->write(m_list);
}

void Companion::acceptClients()
{
    while (QLocalSocket *client = m_server.nextPendingConnection()) {
        connect(client, &QLocalSocket::readyRead, this, [this, client] { answer(client); });
        connect(client, &QLocalSocket::disconnected, this, [this, client] {
            m_listeners.removeAll(client);
            client->deleteLater();
        });
        answer(client); // bytes that came before readyRead() was connected
    }
}

void Companion::answer(QLocalSocket *client)
{
    while (client->canReadLine()) {
        if (client->readLine(MaxRequestBytes).trimmed() != "LIST")
            return client->abort();
        if (!m_listeners.contains(client))
            m_listeners << client;
        client->write(m_list);
    }
    if (client->bytesAvailable() > MaxRequestBytes)
        client->abort();
}

} // namespace recorder
