#pragma once

#include <QIcon>

#include <functional>

class QPainter;
class QRectF;

namespace paravue
{

/// An icon that is painted by \a paint wherever it is shown, so it is sharp at every scale.
using IconPainter =
    std::function<void(QPainter &painter, const QRectF &rect, QIcon::Mode mode, QIcon::State state)>;
QIcon drawnIcon(IconPainter paint);

} // namespace paravue
