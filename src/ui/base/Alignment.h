#pragma once

#include <QString>
#include <Qt>

namespace paravue
{

/// The words of the attribute "alignment": "right", "center", anything else is left.
Qt::Alignment horizontalAlignment(const QString &word);
/// The words of the attribute "valign": "bottom", "top", anything else is the middle.
Qt::Alignment verticalAlignment(const QString &word);

/// The words of the attribute "orientation": "horizontal", anything else is vertical.
Qt::Orientation orientation(const QString &word);

} // namespace paravue
