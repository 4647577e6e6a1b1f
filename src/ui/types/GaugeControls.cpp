#include "ui/types/GaugeControls.h"

#include "controls/OrbProgressPie.h"
#include "store/TextPattern.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"

#include <QProgressBar>

#include <algorithm>
#include <limits>
#include <utility>

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

int percentOf(qint64 part, qint64 size)
{
    if (size <= 0)
        return 0;
    // Beyond this the product leaves 64 bits, and a percentage is exact enough from the quotient.
    const bool fits = part <= std::numeric_limits<qint64>::max() / 100;
    const qint64 percent = fits ? part * 100 / size : part / std::max<qint64>(1, size / 100);
    return int(std::clamp<qint64>(percent, 0, 100));
}

} // namespace

QWidget *ProgressBarControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *bar = new QProgressBar(parent);
    bar->setRange(intAttribute(control.element, QStringLiteral("minvalue")),
                  intAttribute(control.element, QStringLiteral("maxvalue")));
    bar->setValue(intAttribute(control.element, QStringLiteral("value")));
    return bar;
}

const QMetaObject &ProgressBarControl::widgetClass() const
{
    return QProgressBar::staticMetaObject;
}

bool ProgressBarControl::load(ControlContext &context, const Control &control) const
{
    auto *bar = qobject_cast<QProgressBar *>(control.widget);
    const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
    if (key.isNull())
        return false;
    const int before = bar->value();
    // The toolkit ignores a value outside the range, and would go on showing the last one.
    bar->setValue(qBound(bar->minimum(), context.value(control, addressText(key)).toInt(), bar->maximum()));
    return bar->value() != before;
}

QWidget *ProgressPieControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *pie = new OrbProgressPie(parent);
    if (control.element.hasAttribute(QStringLiteral("value")))
        pie->setProgress(intAttribute(control.element, QStringLiteral("value")));
    return pie;
}

const QMetaObject &ProgressPieControl::widgetClass() const
{
    return OrbProgressPie::staticMetaObject;
}

bool ProgressPieControl::load(ControlContext &context, const Control &control) const
{
    auto *pie = qobject_cast<OrbProgressPie *>(control.widget);
    const std::pair before(pie->progress(), pie->limit());
    const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
    const auto sizeIn = [&](const QString &tag) {
        return parseSize(context.text(control, control.element.firstChildElement(tag).text()));
    };
    if (!control.element.firstChildElement(QStringLiteral("size")).isNull()) {
        const qint64 size = sizeIn(QStringLiteral("size"));
        pie->setProgress(percentOf(sizeIn(QStringLiteral("used")), size));
        pie->setLimit(percentOf(sizeIn(QStringLiteral("limit")), size));
    } else if (!key.isNull()) {
        pie->setProgress(context.value(control, addressText(key)).toInt());
    }
    return before != std::pair(pie->progress(), pie->limit());
}

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
