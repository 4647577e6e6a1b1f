#pragma once

#include "ui/tasks/PictureAudience.h"
#include "video/StreamFigures.h"

#include <QDateTime>
#include <QObject>
#include <QPixmap>

#include <functional>
#include <memory>
#include <optional>

class QDomElement;

namespace paravue
{

/// Fetches the pictures of one task from its construction to its destruction.
class PictureSource : public QObject
{
    Q_OBJECT

public:
    explicit PictureSource(QObject *parent = nullptr) : QObject(parent)
    {
        connect(this, &PictureSource::pixmapReady, this, [this] { ++m_pictures; });
        connect(this, &PictureSource::scaledReady, this, [this] { ++m_pictures; });
    }

    /// False when no further picture can come: a live one has lost its connection, or the request for a still
    /// one has ended. The task then makes another source.
    virtual bool isActive() const = 0;
    /// True when there has been a connection, even if it is lost now.
    virtual bool hasConnected() const { return false; }
    /// True once the recorder has accepted the login.
    virtual bool isAccepted() const { return pictures() > 0; }
    /// True when the recorder has refused the login or ended the connection before any picture. It may lock
    /// the account when the next attempts follow too soon.
    virtual bool isRefused() const { return !isActive() && hasConnected() && pictures() == 0; }
    /// A counter that changes whenever anything arrives over the connection.
    virtual quint64 traffic() const { return 0; }
    /// A counter of the pictures that were left out because this computer has not kept up.
    virtual quint64 leftOut() const { return 0; }
    /// Of a live stream.
    virtual std::optional<StreamFigures> figures() const { return {}; }
    /// Why there is no picture, as a short text for the user; empty when the source does not know.
    virtual QString problem() const { return {}; }

    /// From now on pictures that nobody sees need not come, and those of which only the painted size is
    /// needed may come in that size.
    virtual void setAudience(const std::shared_ptr<const PictureAudience> &) {}
    /// Emits wholeReady() if the last picture has come in another size only.
    virtual void showWhole() {}
    /// True while no pictures come because nobody sees them.
    virtual bool isPaused() const { return false; }

    /// For a camera that turns: where it looks (controls/PtzPosition.h), empty while that is not known.
    virtual QString cameraPosition() const { return {}; }
    virtual void turnTo(const QString &) {}
    virtual void goTo(int) {}
    virtual void setPoint(int, const QString &) {}

    /// When the last still picture was taken; not valid when the recorder does not say so.
    virtual QDateTime pictureTime() const { return {}; }

    /// How many pictures have come.
    quint64 pictures() const { return m_pictures; }

Q_SIGNALS:
    void pixmapReady(const QPixmap &pixmap);
    /// A picture in the size in which the audience paints it.
    void scaledReady(const QPixmap &pixmap);
    /// The last picture of scaledReady() in its own size.
    void wholeReady(const QPixmap &pixmap);
    /// cameraPosition() has changed.
    void cameraMoved(const QString &position);

private:
    quint64 m_pictures = 0;
};

enum class PictureKind {
    Still, ///< one picture over HTTP
    Live,  ///< the recorder's video stream
};

/// Makes the source for \a task, whose child "url" has the attributes "parsed" (where the pictures come
/// from), "login" and "password". Null when there is none for this kind; the task then does nothing.
using PictureSourceFactory =
    std::function<std::unique_ptr<PictureSource>(PictureKind kind, QDomElement task)>;

} // namespace paravue
