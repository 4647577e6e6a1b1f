#pragma once

#include <QIcon>
#include <QPixmap>

#include <functional>

class QColor;
class QPainter;
class QRectF;

namespace paravue
{

/// An icon that is painted by \a paint wherever it is shown, so it is sharp at every scale.
using IconPainter =
    std::function<void(QPainter &painter, const QRectF &rect, QIcon::Mode mode, QIcon::State state)>;
QIcon drawnIcon(IconPainter paint);

/// A picture of one colour in another one, for a ground that it was not made for, at the scale of \a painter.
QPixmap iconInColor(const QIcon &icon, const QSize &size, const QPainter &painter, const QColor &color);

} // namespace paravue
