#include "controls/PtzPosition.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace paravue
{

std::optional<double> parseDecimal(const QString &text)
{
    bool isNumber = false;
    const double number = text.trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

bool isNear(const PtzPosition &left, const PtzPosition &right, double tolerance)
{
    return std::abs(left.pan - right.pan) < tolerance && std::abs(left.tilt - right.tilt) < tolerance &&
           std::abs(left.zoom.value_or(0) - right.zoom.value_or(0)) < tolerance;
}

std::optional<PtzPosition> parsePtzPosition(const QString &text)
{
    const QStringList fields = text.split(u',');
    const auto field = [&](qsizetype index, double least) -> std::optional<double> {
        const auto number = parseDecimal(fields.value(index));
        return number ? std::optional(std::clamp(*number, least, 1.0)) : std::nullopt;
    };
    const auto pan = field(0, -1);
    const auto tilt = field(1, -1);
    if (!pan || !tilt)
        return {};
    return PtzPosition{*pan, *tilt, field(2, 0)};
}

QString ptzPositionText(const PtzPosition &position)
{
    const auto number = [](double value) {
        return QString::number(std::round(value * 1000) / 1000 + 0, 'f', 3); // -0 becomes 0
    };
    const QString direction = number(position.pan) + u',' + number(position.tilt);
    return position.zoom ? direction + u',' + number(*position.zoom) : direction;
}

} // namespace paravue
