#include "ui/PictureReceivers.h"

#include "video/HttpPictureReceiver.h"
#include "video/VideoHVX3Reciver.h"

#include <QDomElement>
#include <QTcpSocket>

namespace paravue
{
namespace
{

/// A receiver of live video, of which only its pictures and its socket are known.
class LivePictures : public PictureReceiver
{
public:
    LivePictures(QObject *parent, const QDomElement &task)
        : PictureReceiver(parent), m_receiver(new VideoHVX3Reciver(this, task)),
          m_socket(m_receiver->findChild<QTcpSocket *>())
    {
        connect(m_receiver, &VideoHVX3Reciver::pixmapReady, this, &PictureReceiver::pixmapReady);
        connect(m_socket, &QTcpSocket::connected, this, [this] { m_hasConnected = true; });
        connect(m_socket, &QTcpSocket::readyRead, this, [this] { ++m_traffic; });
    }

    bool isActive() const override
    {
        const auto state = m_socket->state();
        return state != QAbstractSocket::UnconnectedState && state != QAbstractSocket::ClosingState;
    }
    bool hasConnected() const override { return m_hasConnected; }
    quint64 traffic() const override { return m_traffic; }

private:
    VideoHVX3Reciver *m_receiver; // a child, as its socket is of it
    QTcpSocket *m_socket;
    quint64 m_traffic = 0;
    bool m_hasConnected = false;
};

class StillPicture : public PictureReceiver
{
public:
    StillPicture(QObject *parent, const QDomElement &task)
        : PictureReceiver(parent), m_receiver(nullptr, task)
    {
        connect(&m_receiver, &HttpPictureReceiver::pixmapReady, this, &PictureReceiver::pixmapReady);
    }

    bool isActive() const override { return !m_receiver.isFinished(); }
    QString problem() const override { return m_receiver.problem(); }

private:
    HttpPictureReceiver m_receiver;
};

} // namespace

ReceiverFactory pictureReceivers(QObject &window)
{
    return [&window](PictureKind kind, const QDomElement &task) -> std::unique_ptr<PictureReceiver> {
        if (kind == PictureKind::Live)
            return std::make_unique<LivePictures>(&window, task);
        return std::make_unique<StillPicture>(&window, task);
    };
}

} // namespace paravue
