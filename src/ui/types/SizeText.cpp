#include "ui/types/SizeText.h"

#include "store/TextPattern.h"

#include <limits>

namespace paravue
{
namespace
{

qint64 unitFactor(const QString &unit)
{
    static const QString units = QStringLiteral("KMGT");
    qint64 factor = 1;
    for (qsizetype power = unit.isEmpty() ? -1 : units.indexOf(unit); power >= 0; --power)
        factor *= 1024;
    return factor;
}

} // namespace

qint64 parseSize(const QString &text)
{
    static const TextPattern pattern(QStringLiteral(R"(\s*([0-9]+(?:\.[0-9]*)?)\s*([TGMK]?).*)"));
    const auto match = pattern.matchWhole(text);
    if (!match)
        return 0;
    const double bytes = match->captures[1].toDouble() * double(unitFactor(match->captures[2]));
    const auto largest = double(std::numeric_limits<qint64>::max());
    return bytes >= largest ? std::numeric_limits<qint64>::max() : qint64(bytes);
}

} // namespace paravue
