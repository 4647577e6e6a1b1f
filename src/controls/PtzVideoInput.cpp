#include "controls/PtzVideoInput.h"

#include "controls/PtzView.h"

#include <QLocale>

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

QString PtzVideoInput::valueText() const
{
    const QString text = PictureView::valueText();
    const auto &position = m_steering.position();
    return position ? tr("%1; %2").arg(text, PtzView::textOf(*position, locale())) : text;
}

void PtzVideoInput::paintOver(QPainter &painter, const QRect &dirty)
{
    m_steering.paint(painter);
    PictureView::paintOver(painter, dirty);
}

} // namespace paravue
