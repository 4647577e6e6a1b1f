#include "controls/PtzVideoInput.h"

namespace paravue
{

PtzVideoInput::PtzVideoInput(QWidget *parent)
    : PictureView(parent), m_steering(*this, PtzSteering::Scene::Camera)
{
    connect(this, &PictureView::pictureChanged, this, [this] {
        if (!pixmap().isNull())
            Q_EMIT signal_Pixmap_ready();
    });
}

void PtzVideoInput::paintOver(QPainter &painter, const QRect &dirty)
{
    m_steering.paint(painter);
    PictureView::paintOver(painter, dirty);
}

} // namespace paravue
