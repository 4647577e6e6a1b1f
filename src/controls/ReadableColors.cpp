#include "controls/ReadableColors.h"

#include <algorithm>
#include <cmath>

namespace paravue
{

namespace
{

double linearChannel(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor &color)
{
    return 0.2126 * linearChannel(color.redF()) + 0.7152 * linearChannel(color.greenF()) +
           0.0722 * linearChannel(color.blueF());
}

} // namespace

double contrastRatio(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({relativeLuminance(a), relativeLuminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor readableTextOn(const QColor &background)
{
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return contrastRatio(black, background) >= contrastRatio(white, background) ? black : white;
}

QColor readableVersion(const QColor &preferred, const QColor &background, double contrast)
{
    constexpr int Steps = 20;
    const QColor strongest = readableTextOn(background);
    for (int step = 0; step < Steps; ++step) {
        const QColor candidate = mixedColor(preferred, strongest, double(step) / Steps);
        if (contrastRatio(candidate, background) >= contrast)
            return candidate;
    }
    return strongest;
}

QColor mixedColor(const QColor &base, const QColor &over, double share)
{
    const auto mix = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return QColor(mix(base.red(), over.red()), mix(base.green(), over.green()),
                  mix(base.blue(), over.blue()));
}

} // namespace paravue
