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
    using QObject::QObject;

    /// False when no further picture can come: a live one has lost its connection, or the request for a still
    /// one has ended. The task then makes another receiver.
    virtual bool isActive() const = 0;

Q_SIGNALS:
    void pixmapReady(const QPixmap &pixmap);
};

enum class PictureKind {
    Still, ///< one picture over HTTP
    Live,  ///< the recorder's video stream
};

/// Makes the receiver for \a task, whose child "url" has the attributes "parsed" (where the pictures come
/// from), "login" and "password". Null when there is none for this kind; the task then does nothing.
using ReceiverFactory = std::function<std::unique_ptr<PictureReceiver>(PictureKind kind, QDomElement task)>;

} // namespace paravue
