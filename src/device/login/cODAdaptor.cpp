#include "device/login/cODAdaptor.h"

#include "device/protocol/DeviceAddress.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QStandardPaths>

using namespace paravue;

namespace
{

constexpr std::chrono::milliseconds RetryInterval(2000);
// A companion is trusted no more than a recorder.
constexpr qsizetype MaxLineBytes = 4096;
constexpr qsizetype MaxRecorders = 10'000;
constexpr qsizetype MaxNameLength = 80;

QString displayName(const QByteArray &bytes)
{
    QString name = QString::fromUtf8(bytes).simplified();
    name.removeIf([](QChar c) { return !c.isPrint(); });
    return name.left(MaxNameLength);
}

} // namespace

cODAdaptor *cODAdaptor::instance()
{
    static QPointer<cODAdaptor> shared;
    if (!shared)
        shared = new cODAdaptor(companionServer(), QCoreApplication::instance());
    return shared;
}

cODAdaptor::cODAdaptor(const QString &server, QObject *parent) : QObject(parent), m_server(server)
{
    m_socket.setReadBufferSize(16 * MaxLineBytes);
    m_retry.setSingleShot(true);
    setRetryInterval(RetryInterval);
    connect(&m_retry, &QTimer::timeout, this, &cODAdaptor::connectToCompanion);
    connect(&m_socket, &QLocalSocket::connected, this, [this] { m_socket.write("LIST\n"); });
    connect(&m_socket, &QLocalSocket::readyRead, this, &cODAdaptor::receive);
    connect(&m_socket, &QLocalSocket::disconnected, this, &cODAdaptor::drop);
    connect(&m_socket, &QLocalSocket::errorOccurred, this, [this] { m_retry.start(); });
    connectToCompanion();
}

cODAdaptor::~cODAdaptor()
{
    m_socket.disconnect(this);
}

QString cODAdaptor::name(const QString &address) const
{
    return m_names.value(comparableUrl(address));
}

void cODAdaptor::waitForList(int milliseconds)
{
    const QDeadlineTimer limit(milliseconds);
    // Every wait may end with data although the list does not: one limit covers all of them.
    while (!m_hasList && !limit.hasExpired() && m_socket.state() == QLocalSocket::ConnectedState &&
           m_socket.waitForReadyRead(static_cast<int>(limit.remainingTime()))) {
    }
}

QString cODAdaptor::companionServer()
{
    const QString name = QStringLiteral("paravue-companion");
#ifdef Q_OS_WIN
    return name;
#else
    // Qt's choice is the temporary folder, where any user could pose as the companion.
    const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return (session.isEmpty() ? data + QStringLiteral("/Paravue") : session) + u'/' + name;
#endif
}

void cODAdaptor::connectToCompanion()
{
    m_socket.connectToServer(m_server);
}

void cODAdaptor::receive()
{
    m_buffer += m_socket.readAll();
    qsizetype start = 0;
    for (qsizetype end; (end = m_buffer.indexOf('\n', start)) >= 0; start = end + 1) {
        if (!takeLine(m_buffer.sliced(start, end - start)))
            return m_socket.abort();
    }
    m_buffer.remove(0, start);
    if (m_buffer.size() > MaxLineBytes)
        m_socket.abort();
}

/// False when the line or the list is longer than allowed.
bool cODAdaptor::takeLine(const QByteArray &line)
{
    const QByteArray text = line.trimmed();
    if (text.isEmpty()) {
        m_hasList = true;
        setNames(std::exchange(m_incoming, {}));
        return true;
    }
    const qsizetype tab = text.indexOf('\t');
    if (tab > 0)
        m_incoming.insert(comparableUrl(QString::fromUtf8(text.first(tab))),
                          displayName(text.sliced(tab + 1)));
    return text.size() <= MaxLineBytes && m_incoming.size() <= MaxRecorders;
}

/// Forgets the names: without the companion nothing tells whether they still hold.
void cODAdaptor::drop()
{
    m_buffer.clear();
    m_incoming.clear();
    m_hasList = false;
    setNames({});
    m_retry.start();
}

void cODAdaptor::setNames(const QHash<QString, QString> &names)
{
    if (names == m_names)
        return;
    m_names = names;
    Q_EMIT update();
}
