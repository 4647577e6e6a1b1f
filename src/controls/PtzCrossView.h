#pragma once

#include "controls/PtzSteering.h"
#include "controls/PtzView.h"

namespace paravue
{

/// A picture of all that a camera can turn to, with a cross hair where it looks: pan from edge to edge, tilt
/// from the lower edge to the upper one. While the position is not known the cross stands dashed in the
/// middle; else the camera can be steered in the picture.
class PtzCrossView : public PtzView, public SteeredView
{
    Q_OBJECT

public:
    explicit PtzCrossView(QWidget *parent = nullptr);

    PtzSteering &steering() override { return m_steering; }

protected:
    void paintOver(QPainter &painter, const QRect &dirty) override;

private:
    void paintCross(QPainter &painter) const;

    PtzSteering m_steering;
};

} // namespace paravue
