#include "ui/tasks/PictureReceivers.h"

#include "video/HttpPictureReceiver.h"
#include "video/PtzVideoReceiver.h"
#include "video/VideoHVX3Reciver.h"

#include <QDomElement>
#include <QTcpSocket>

namespace paravue
{
namespace
{

/// A receiver of live video, of which only its pictures and its socket are known.
template <class Receiver>
class LivePictures : public PictureReceiver
{
public:
    LivePictures(QObject *parent, const QDomElement &task)
        : PictureReceiver(parent), m_receiver(nullptr, task),
          m_socket(m_receiver.template findChild<QTcpSocket *>())
    {
        connect(&m_receiver, &VideoHVX3Reciver::pixmapReady, this, &PictureReceiver::pixmapReady);
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

protected:
    Receiver m_receiver;

private:
    QTcpSocket *const m_socket; // a child of the receiver
    quint64 m_traffic = 0;
    bool m_hasConnected = false;
};

class TurningCamera : public LivePictures<PtzVideoReceiver>
{
public:
    TurningCamera(QObject *parent, const QDomElement &task) : LivePictures(parent, task)
    {
        connect(&m_receiver, &PtzVideoReceiver::positionChanged, this, &PictureReceiver::cameraMoved);
    }

    QString cameraPosition() const override { return m_receiver.position(); }
    void goTo(int point) override { m_receiver.goTo(point); }
    void setPoint(int point, const QString &text) override { m_receiver.setPoint(point, text); }
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

std::unique_ptr<PictureReceiver> makeLive(QObject &window, const QDomElement &task)
{
    if (!task.firstChildElement(QStringLiteral("ptz")).isNull())
        return std::make_unique<TurningCamera>(&window, task);
    return std::make_unique<LivePictures<VideoHVX3Reciver>>(&window, task);
}

} // namespace

ReceiverFactory pictureReceivers(QObject &window)
{
    return [&window](PictureKind kind, const QDomElement &task) -> std::unique_ptr<PictureReceiver> {
        if (kind == PictureKind::Live)
            return makeLive(window, task);
        return std::make_unique<StillPicture>(&window, task);
    };
}

} // namespace paravue
