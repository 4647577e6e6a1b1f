#pragma once

#include "controls/PtzPosition.h"

#include <QPointF>

/// Calibration points as recorders keep them: "x,y", "x,y,pan,tilt,zoom" or "x,y,pan,tilt,zoom,name", a place
/// in the picture (0 to 1 from the left and from the top), where the camera looked when it was set, and a
/// name, which may hold commas. A text that does not begin with two numbers is not a point. Single quotes in
/// what is changed become apostrophes.
namespace paravue
{

/// The place of a point, clamped to the picture; nothing for a text that is not a point.
std::optional<QPointF> placeOfPoint(const QString &text);

QString nameOfPoint(const QString &text);
/// The point \a text with another name; an empty one removes the name. As it is when it does not say where
/// the camera looked: then it has no place for a name.
QString namedPoint(const QString &text, const QString &name);

/// The point \a text set to another place. Without a \a camera the fields of the camera stay as they are.
QString placedPoint(const QString &text, const QPointF &place, const std::optional<PtzPosition> &camera);

} // namespace paravue
