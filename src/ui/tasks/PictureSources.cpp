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
#include <QTimer>

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
        connect(m_socket, &QTcpSocket::connected, this, [this] { m_hasConnected = true; });
        connect(m_socket, &QTcpSocket::readyRead, this, [this] { ++m_traffic; });
        connect(m_socket, &QTcpSocket::disconnected, this, &LivePictureSource::showWhole);
        m_wholeTimer.setSingleShot(true);
        connect(&m_wholeTimer, &QTimer::timeout, this, &LivePictureSource::showWhole);
    }
    // The socket ends its connection behind this destructor, when the receiver is destroyed.
    ~LivePictureSource() override { m_socket->disconnect(this); }

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

    void setAudience(const std::shared_ptr<const PictureAudience> &audience) override
    {
        m_audience = audience;
    }
    void showWhole() override
    {
        const QPixmap pixmap = m_receiver.wholePicture();
        if (pixmap.isNull())
            return;
        m_lastWhole.start();
        m_wholeTimer.stop();
        Q_EMIT wholeReady(pixmap);
    }
    // Even a control that nobody sees gets its first picture.
    bool isPaused() const override { return pictures() > 0 && m_audience && !m_audience->isWatching(); }

protected:
    Receiver m_receiver;

private:
    // The first picture behind a pause is shown, as the next one may be long in coming.
    bool wantsPicture(bool isInTurn) override
    {
        const bool isFirst = m_wasPaused && !isPaused();
        m_wasPaused = m_wasPaused && !isFirst;
        return m_choice.takes(isInTurn || isFirst, m_clock.elapsed());
    }
    bool isWatching() override
    {
        const bool isWatched = !isPaused();
        m_wasPaused = m_wasPaused || !isWatched;
        return isWatched;
    }
    QSize scaledSize() override { return m_audience ? m_audience->scaledSize() : QSize(); }
    void showPicture(const QPixmap &pixmap) override
    {
        m_lastWhole.start();
        m_wholeTimer.stop();
        Q_EMIT pixmapReady(pixmap);
    }
    void showScaled(const QPixmap &pixmap) override
    {
        Q_EMIT scaledReady(pixmap);
        // What is painted does not change: scaled in another way the picture would twitch.
        if (m_lastWhole.hasExpired(WholeInterval))
            showWhole();
        else
            m_wholeTimer.start(WholeInterval);
    }

    /// How old the picture in its own size may become that QLabel::pixmap() returns, which is no virtual
    /// function.
    static constexpr int WholeInterval = 250; // milliseconds

    std::shared_ptr<const PictureAudience> m_audience;
    QElapsedTimer m_clock;
    QElapsedTimer m_lastWhole; ///< runs from the first picture on
    QTimer m_wholeTimer;       ///< when no further picture comes
    PictureChoice m_choice;
    QTcpSocket *const m_socket; // a child of the receiver
    quint64 m_traffic = 0;
    bool m_hasConnected = false;
    bool m_wasPaused = false; ///< no picture was shown since
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
    QDateTime pictureTime() const override { return m_receiver.pictureTime(); }

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
