#include "ui/binding/ControlAdapter.h"

#include "ui/description/InterfaceDocument.h"

namespace paravue
{

ControlAdapter::~ControlAdapter() = default;

std::pair<int, int> RangeRule::rangeOf(const QDomElement &element) const
{
    const QString most = QStringLiteral("maxvalue");
    return {intAttribute(element, QStringLiteral("minvalue")),
            element.hasAttribute(most) ? intAttribute(element, most) : usualMost};
}

} // namespace paravue
