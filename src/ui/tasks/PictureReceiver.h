#pragma once

#include <QObject>
#include <QPixmap>

#include <functional>
#include <memory>

class QDomElement;

namespace paravue
{

/// Fetches the pictures of one video task from the moment it is made until it is destroyed.
class PictureReceiver : public QObject
{
    Q_OBJECT

public:
    explicit PictureReceiver(QObject *parent = nullptr) : QObject(parent)
    {
        connect(this, &PictureReceiver::pixmapReady, this, [this] { ++m_pictures; });
    }

    /// False when no further picture can come: a live one has lost its connection, or the request for a still
    /// one has ended. The task then makes another receiver.
    virtual bool isActive() const = 0;
    /// Whether there has been a connection, be it lost by now.
    virtual bool hasConnected() const { return false; }
    /// Counts whatever has come over the connection, in units of no meaning.
    virtual quint64 traffic() const { return 0; }
    /// Why there was no picture, where the receiver knows; in a few words for the user.
    virtual QString problem() const { return {}; }

    /// For a camera that turns: where it looks (controls/PtzPosition.h), empty while that is not known.
    virtual QString cameraPosition() const { return {}; }
    virtual void goTo(int) {}
    virtual void setPoint(int, const QString &) {}

    /// How many pictures have come.
    quint64 pictures() const { return m_pictures; }

Q_SIGNALS:
    void pixmapReady(const QPixmap &pixmap);
    /// cameraPosition() is another one.
    void cameraMoved(const QString &position);

private:
    quint64 m_pictures = 0;
};

enum class PictureKind {
    Still, ///< one picture over HTTP
    Live,  ///< the recorder's video stream
};

/// Makes the receiver for \a task, whose child "url" has the attributes "parsed" (where the pictures come
/// from), "login" and "password". Null when there is none for this kind; the task then does nothing.
using ReceiverFactory = std::function<std::unique_ptr<PictureReceiver>(PictureKind kind, QDomElement task)>;

} // namespace paravue
