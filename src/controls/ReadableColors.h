#pragma once

#include <QColor>

namespace paravue
{

/// The contrast of two opaque colours as the web accessibility guidelines (WCAG 2) define it: 1 for equal
/// colours, 21 for black on white.
double contrastRatio(const QColor &a, const QColor &b);
/// The contrast from which on text is comfortable (WCAG 2, level AA).
constexpr double ReadableContrast = 4.5;
/// The least contrast of marks such as the edge of a field, and of disabled text.
constexpr double VisibleContrast = 3;
/// What a user who has chosen a high-contrast desktop expects of text (level AAA). No desktop says which kind
/// it is, so colours that the program chooses itself have it everywhere.
constexpr double HighContrast = 7;

/// Black or white, whichever has more contrast on \a background.
QColor readableTextOn(const QColor &background);

/// \a preferred, moved towards black or white just as far as it needs to have \a contrast on \a background,
/// or as much as there is.
QColor readableVersion(const QColor &preferred, const QColor &background, double contrast = HighContrast);

/// \a share (0 to 1) of \a over, the rest \a base.
QColor mixedColor(const QColor &base, const QColor &over, double share);

} // namespace paravue
