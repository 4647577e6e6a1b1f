#include "ui/tasks/PictureSources.h"

#include "ui/tasks/PictureChoice.h"
#include "ui/tasks/PictureStatus.h"
#include "video/HttpPictureReceiver.h"
#include "video/PictureViewer.h"
#include "video/PtzVideoReceiver.h"
#include "video/VideoHVX3Reciver.h"

#include <QDomElement>
#include <QElapsedTimer>
#include <QTcpSocket>

namespace paravue
{
namespace
{

/// A receiver of live video, of which only its pictures and its socket are known.
template <class Receiver>
class LivePictureSource : public PictureSource, private PictureViewer
{
public:
    LivePictureSource(QObject *parent, const QDomElement &task)
        : PictureSource(parent), m_receiver(this, task),
          m_socket(m_receiver.template findChild<QTcpSocket *>())
    {
        m_clock.start();
        m_receiver.setViewer(this);
        connect(&m_receiver, &VideoHVX3Reciver::pixmapReady, this, &PictureSource::pixmapReady);
        connect(m_socket, &QTcpSocket::connected, this, [this] { m_hasConnected = true; });
        connect(m_socket, &QTcpSocket::readyRead, this, [this] { ++m_traffic; });
    }

    bool isActive() const override
    {
        const auto state = m_socket->state();
        return state != QAbstractSocket::UnconnectedState && state != QAbstractSocket::ClosingState;
    }
    bool hasConnected() const override { return m_hasConnected; }
    bool isAccepted() const override { return m_receiver.isStreaming(); }
    quint64 traffic() const override { return m_traffic; }
    quint64 leftOut() const override { return m_receiver.leftOut(); }
    std::optional<StreamFigures> figures() const override { return m_receiver.figures(); }
    QString problem() const override
    {
        const auto &codec = m_receiver.unknownCodec();
        return codec ? PictureStatus::unknownCodec(*codec) : QString();
    }

    void setAudience(const std::function<bool()> &isSeen) override { m_isSeen = isSeen; }
    // Even a control that nobody sees gets its first picture.
    bool isPaused() const override { return pictures() > 0 && m_isSeen && !m_isSeen(); }

protected:
    Receiver m_receiver;

private:
    bool wantsPicture(bool isInTurn) override { return m_choice.takes(isInTurn, m_clock.elapsed()); }
    bool isWatching() override { return !isPaused(); }
    void showPicture(const QPixmap &pixmap) override { Q_EMIT pixmapReady(pixmap); }

    std::function<bool()> m_isSeen;
    QElapsedTimer m_clock;
    PictureChoice m_choice;
    QTcpSocket *const m_socket; // a child of the receiver
    quint64 m_traffic = 0;
    bool m_hasConnected = false;
};

class TurningCameraSource : public LivePictureSource<PtzVideoReceiver>
{
public:
    TurningCameraSource(QObject *parent, const QDomElement &task) : LivePictureSource(parent, task)
    {
        connect(&m_receiver, &PtzVideoReceiver::positionChanged, this, &PictureSource::cameraMoved);
    }

    QString cameraPosition() const override { return m_receiver.position(); }
    void turnTo(const QString &position) override { m_receiver.turnTo(position); }
    void goTo(int point) override { m_receiver.goTo(point); }
    void setPoint(int point, const QString &text) override { m_receiver.setPoint(point, text); }
};

class StillPictureSource : public PictureSource
{
public:
    StillPictureSource(QObject *parent, const QDomElement &task)
        : PictureSource(parent), m_receiver(nullptr, task)
    {
        connect(&m_receiver, &HttpPictureReceiver::pixmapReady, this, &PictureSource::pixmapReady);
    }

    bool isActive() const override { return !m_receiver.isFinished(); }
    bool isRefused() const override { return m_receiver.isRefused(); }
    QString problem() const override { return m_receiver.problem(); }

private:
    HttpPictureReceiver m_receiver;
};

std::unique_ptr<PictureSource> makeLive(QObject &window, const QDomElement &task)
{
    if (!task.firstChildElement(QStringLiteral("ptz")).isNull())
        return std::make_unique<TurningCameraSource>(&window, task);
    return std::make_unique<LivePictureSource<VideoHVX3Reciver>>(&window, task);
}

} // namespace

PictureSourceFactory pictureSources(QObject &window)
{
    return [&window](PictureKind kind, const QDomElement &task) -> std::unique_ptr<PictureSource> {
        if (kind == PictureKind::Live)
            return makeLive(window, task);
        return std::make_unique<StillPictureSource>(&window, task);
    };
}

} // namespace paravue
