#pragma once

#include <QColor>

namespace paravue
{

/// The contrast of two opaque colours as the web accessibility guidelines (WCAG 2) define it: 1 for equal
/// colours, 21 for black on white. Text is comfortable from 4.5 on.
double contrastRatio(const QColor &a, const QColor &b);

/// Black or white, whichever has more contrast on \a background.
QColor readableTextOn(const QColor &background);

/// \a share (0 to 1) of \a over, the rest \a base.
QColor mixedColor(const QColor &base, const QColor &over, double share);

} // namespace paravue
