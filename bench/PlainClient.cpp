#include "PlainClient.h"

#include <QHostAddress>
#include <QTemporaryFile>

#include <array>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>

namespace paravue::bench
{

namespace
{

struct File {
    const char *name;
    const char *get;
    const char *put; ///< null: is not sent back
    bool sectionless;
};

constexpr std::array<File, 9> Files{{
    {"interface", "GET SETUP\r\n", nullptr, false},
    {"streams", "GET CONFIG\r\n", "PUT CONFIG\r\n", false},
    {"net", "GET NET CONFIG\r\n", "PUT NET CONFIG\r\n", true},
    {"time", "GET TIME CONFIG\r\n", "PUT TIME CONFIG\r\n", true},
    {"timers", "GET TIMER CONFIG\r\n", "PUT TIMER CONFIG\r\n", false},
    {"soft", "GET SOFT CONFIG\r\n", nullptr, true},
    {"disk", "GET DISK CONFIG\r\n", "PUT DISK CONFIG\r\n", true},
    {"users", "GET USER CONFIG\r\n", "PUT USER CONFIG\r\n", true},
    {"state", "GET STATE CONFIG\r\n", "PUT STATE CONFIG\r\n", false},
}};

const QByteArray SectionLine = "[ untitled ]\r\n";
const QByteArray AnswerOk = "VORN_ANSWER=OK\r\n";

QByteArray unpacked(const QByteArray &packed)
{
    constexpr int GzipFormat = 15 + 16;
    z_stream stream{};
    if (inflateInit2(&stream, GzipFormat) != Z_OK)
        return packed;
    QByteArray result;
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = uInt(packed.size());
    std::array<char, 64 * 1024> block;
    int status = Z_OK;
    while (status == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef *>(block.data());
        stream.avail_out = uInt(block.size());
        status = inflate(&stream, Z_NO_FLUSH);
        result.append(block.data(), qsizetype(block.size() - stream.avail_out));
    }
    inflateEnd(&stream);
    return status == Z_STREAM_END ? result : packed;
}

} // namespace

PlainClient::PlainClient(const QByteArray &login, const QByteArray &password, quint16 port)
    : m_login(login), m_password(password), m_port(port)
{
    connect(&m_socket, &QTcpSocket::connected, this, [this] {
        m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_socket.write("\x04LOGIN=" + m_login + "\r\nPASS=" + m_password + "\r\n");
    });
    connect(&m_socket, &QTcpSocket::readyRead, this, &PlainClient::readReply);
    connect(&m_socket, &QTcpSocket::disconnected, this, &PlainClient::done);
}

PlainClient::~PlainClient()
{
    m_socket.disconnect(this);
}

void PlainClient::fetch()
{
    start(Task::Fetch);
}

void PlainClient::send()
{
    start(Task::Send);
}

void PlainClient::sendBlocking() const
{
    const int connection = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(m_port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int now = 1;
    ::setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &now, sizeof(now));
    if (::connect(connection, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0)
        qFatal("Cannot connect");
    const auto exchange = [connection](const QByteArray &request) {
        for (qsizetype sent = 0; sent < request.size();) {
            const auto taken = ::write(connection, request.constData() + sent, size_t(request.size() - sent));
            if (taken <= 0)
                qFatal("Cannot send");
            sent += taken;
        }
        QByteArray reply;
        std::array<char, 4096> block;
        while (!reply.endsWith(AnswerOk)) {
            const auto size = ::read(connection, block.data(), block.size());
            if (size <= 0)
                qFatal("The recorder refuses: %s", reply.constData());
            reply.append(block.data(), size);
        }
    };
    exchange("\x04LOGIN=" + m_login + "\r\nPASS=" + m_password + "\r\n");
    for (const File &file : Files) {
        if (file.put)
            exchange(requestWithFile(file.put, file.name));
    }
    ::close(connection);
}

void PlainClient::start(Task task)
{
    m_task = task;
    m_loggedIn = false;
    m_index = 0;
    m_socket.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
}

void PlainClient::readReply()
{
    m_buffer += m_socket.readAll();
    const qsizetype headerEnd = m_buffer.indexOf("\r\n") + 2;
    if (headerEnd < 2)
        return;
    const qsizetype length = m_buffer.sliced(7, headerEnd - 9).toLongLong();
    if (m_buffer.size() < headerEnd + length)
        return;
    const QByteArray body = m_buffer.sliced(headerEnd, length - AnswerOk.size());
    if (!m_buffer.endsWith(AnswerOk))
        qFatal("The recorder refuses: %s", m_buffer.right(200).constData());
    m_receivedBytes += m_buffer.size();
    m_buffer.clear();
    if (m_loggedIn && m_task == Task::Fetch)
        saveReply(body);
    m_index += m_loggedIn;
    m_loggedIn = true;
    nextRequest();
}

void PlainClient::nextRequest()
{
    while (m_index < Files.size() && m_task == Task::Send && !Files[m_index].put)
        ++m_index;
    if (m_index == Files.size())
        m_socket.disconnectFromHost();
    else if (m_task == Task::Fetch)
        m_socket.write(Files[m_index].get);
    else
        sendFile(Files[m_index].put, Files[m_index].name);
}

void PlainClient::sendFile(const QByteArray &request, const QString &name)
{
    m_socket.write(requestWithFile(request, name));
}

QByteArray PlainClient::requestWithFile(const QByteArray &request, const QString &name) const
{
    QFile file(m_paths.at(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qPrintable(name));
    QByteArray content = file.readAll();
    if (content.startsWith(SectionLine))
        content.remove(0, SectionLine.size());
    content.replace("\r\n", "\n");
    return request + "LENGTH=" + QByteArray::number(content.size()) + "\r\n" + content;
}

void PlainClient::saveReply(const QByteArray &body)
{
    const File &file = Files[m_index];
    const QByteArray content = m_index == 0 ? unpacked(body) : file.sectionless ? SectionLine + body : body;
    save(file.name, content);
    save(QString(file.name) + ".original", content);
}

void PlainClient::save(const QString &name, const QByteArray &content)
{
    auto file = std::make_unique<QTemporaryFile>();
    if (!file->open() || file->write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(name));
    m_paths[name] = file->fileName();
    file->close();
    m_files.push_back(std::move(file));
}

} // namespace paravue::bench
