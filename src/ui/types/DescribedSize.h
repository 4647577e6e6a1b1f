#pragma once

#include <QSize>

class QDomElement;

namespace paravue
{

/// The attributes "width" and "height" of a widget of a fixed size, with \a usual for what the description
/// leaves out.
QSize describedSize(const QDomElement &element, const QSize &usual);

} // namespace paravue
