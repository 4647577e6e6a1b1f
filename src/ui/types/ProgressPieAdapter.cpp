#include "controls/OrbProgressPie.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/SizeText.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace paravue
{
namespace
{

int percentOf(qint64 part, qint64 size)
{
    if (size <= 0)
        return 0;
    // Beyond this the product leaves 64 bits, and a percentage is exact enough from the quotient.
    const bool fits = part <= std::numeric_limits<qint64>::max() / 100;
    const qint64 percent = fits ? part * 100 / size : part / std::max<qint64>(1, size / 100);
    return int(std::clamp<qint64>(percent, 0, 100));
}

/// The pie shows used * 100 / size when its element has the children "size" and "used", and otherwise the
/// percentage at the address of its key.
class ProgressPieAdapter : public TypedAdapter<OrbProgressPie>
{
public:
    ProgressPieAdapter()
        : TypedAdapter({.attributes = {{"value"}}, .children = {{"size"}, {"used"}, {"limit"}}})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *pie = new OrbProgressPie(parent);
        if (control.element.hasAttribute(QStringLiteral("value")))
            pie->setProgress(intAttribute(control.element, QStringLiteral("value")));
        return pie;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        OrbProgressPie &pie = widget(control);
        const std::pair before(pie.progress(), pie.limit());
        const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
        const auto sizeIn = [&](const QString &tag) {
            return parseSize(context.text(control, control.element.firstChildElement(tag).text()));
        };
        if (!control.element.firstChildElement(QStringLiteral("size")).isNull()) {
            const qint64 size = sizeIn(QStringLiteral("size"));
            pie.setProgress(percentOf(sizeIn(QStringLiteral("used")), size));
            pie.setLimit(percentOf(sizeIn(QStringLiteral("limit")), size));
        } else if (!key.isNull()) {
            pie.setProgress(context.value(control, addressText(key)).toInt());
        }
        return before != std::pair(pie.progress(), pie.limit());
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeProgressPieAdapter()
{
    return std::make_unique<ProgressPieAdapter>();
}

} // namespace paravue
