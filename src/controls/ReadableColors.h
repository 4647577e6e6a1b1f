#pragma once

#include <QColor>

namespace paravue
{

/// The contrast of two opaque colours as the web accessibility guidelines (WCAG 2) define it: 1 for equal
/// colours, 21 for black on white.
double contrastRatio(const QColor &a, const QColor &b);
/// The contrast from which on text is comfortable.
constexpr double ReadableContrast = 4.5;

/// Black or white, whichever has more contrast on \a background.
QColor readableTextOn(const QColor &background);

/// \a preferred, moved towards black or white just as far as it needs to be readable on \a background.
QColor readableVersion(const QColor &preferred, const QColor &background);

/// \a share (0 to 1) of \a over, the rest \a base.
QColor mixedColor(const QColor &base, const QColor &over, double share);

} // namespace paravue
