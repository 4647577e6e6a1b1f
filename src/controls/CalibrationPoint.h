#pragma once

#include "controls/PtzPosition.h"

#include <QPointF>

/// Calibration points as recorders keep them: "x,y" or "x,y,pan,tilt,zoom", a place in the picture (0 to 1
/// from the left and from the top) and where the camera looked when it was set. Further fields belong to the
/// recorder and stay as they are. A text that does not begin with two numbers is not a point.
namespace paravue
{

/// The place of a point, clamped to the picture; nothing for a text that is not a point.
std::optional<QPointF> placeOfPoint(const QString &text);

/// The point \a text set to another place. Without a \a camera the fields of the camera stay as they are.
QString placedPoint(const QString &text, const QPointF &place, const std::optional<PtzPosition> &camera);

} // namespace paravue
