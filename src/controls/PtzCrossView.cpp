#include "controls/PtzCrossView.h"

#include <QPainter>

namespace paravue
{
namespace
{

constexpr double CentreGap = 6; // leaves what the camera looks at visible
constexpr double Ring = 14;

} // namespace

PtzCrossView::PtzCrossView(QWidget *parent) : PtzView(parent), m_steering(*this, PtzSteering::Scene::All) {}

void PtzCrossView::paintOver(QPainter &painter, const QRect &dirty)
{
    paintCross(painter);
    m_steering.paint(painter);
    PtzView::paintOver(painter, dirty); // last, so that the cross does not strike its text through
}

void PtzCrossView::paintCross(QPainter &painter) const
{
    const PtzPosition looksAt = position().value_or(PtzPosition());
    const QPoint place = positionOf({(looksAt.pan + 1) / 2, (1 - looksAt.tilt) / 2}).toPoint();
    const QPointF centre = place + QPointF(0.5, 0.5); // the hairs are sharp on whole pixels
    const QRectF picture = pictureRect();
    const QList<QLineF> hairs{
        {picture.left(), centre.y(), centre.x() - CentreGap, centre.y()},
        {centre.x() + CentreGap, centre.y(), picture.right(), centre.y()},
        {centre.x(), picture.top(), centre.x(), centre.y() - CentreGap},
        {centre.x(), centre.y() + CentreGap, centre.x(), picture.bottom()},
    };
    painter.setRenderHint(QPainter::Antialiasing);
    if (!position()) {
        drawOnPicture(painter, hairs, 1, Qt::DashLine);
        return;
    }
    drawOnPicture(painter, hairs, 1);
    painter.setBrush(Qt::NoBrush);
    for (const auto &[color, width] : {std::pair(Qt::black, 4), std::pair(Qt::white, 2)}) {
        painter.setPen(QPen(color, width));
        painter.drawEllipse(centre, Ring, Ring);
    }
}

} // namespace paravue
