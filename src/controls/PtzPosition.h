#pragma once

#include <QString>

#include <optional>

namespace paravue
{

/// Where a camera with pan, tilt and zoom looks, in the generic spaces that ONVIF defines for all makes: pan
/// from -1 (left end) to 1, tilt from -1 (lower end) to 1, zoom from 0 (wide) to 1.
struct PtzPosition {
    double pan = 0;
    double tilt = 0;
    std::optional<double> zoom;

    friend bool operator==(const PtzPosition &, const PtzPosition &) = default;
};

/// No number differs by \a tolerance or more. A zoom that is not known counts as none.
bool isNear(const PtzPosition &left, const PtzPosition &right, double tolerance);

/// "pan,tilt" or "pan,tilt,zoom" with decimal points, such as "0.25,-0.4,0.1"; further fields are ignored and
/// numbers clamped to the ranges. Nothing when pan or tilt is not a number.
std::optional<PtzPosition> parsePtzPosition(const QString &text);

/// The text of a position, without a zoom that is not known. Numbers have three decimals.
QString ptzPositionText(const PtzPosition &position);

/// A decimal number as it stands in such texts; nothing for other texts and numbers that are not finite.
std::optional<double> parseDecimal(const QString &text);

} // namespace paravue
