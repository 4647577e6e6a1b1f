#include "ui/PictureReceivers.h"

#include "video/HttpPictureReceiver.h"

#include <QDomElement>

namespace paravue
{
namespace
{

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
            return {};
        return std::make_unique<StillPicture>(&window, task);
    };
}

} // namespace paravue
