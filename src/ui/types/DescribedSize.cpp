#include "ui/types/DescribedSize.h"

#include "ui/base/UiLimits.h"
#include "ui/description/InterfaceDocument.h"

#include <algorithm>

namespace paravue
{

QSize describedSize(const QDomElement &element, const QSize &usual)
{
    const auto side = [&](const QString &name, int otherwise) {
        const int length = intAttribute(element, name);
        return length > 0 ? std::min(length, limits::Pixels) : otherwise;
    };
    return {side(QStringLiteral("width"), usual.width()), side(QStringLiteral("height"), usual.height())};
}

} // namespace paravue
