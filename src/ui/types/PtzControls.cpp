#include "ui/types/PtzControls.h"

#include "controls/PtzCalibrator.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedAddresses.h"

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int UsualPoints = 4;

QSize pictureSize(const QDomElement &element)
{
    return QSize(intAttribute(element, QStringLiteral("width")),
                 intAttribute(element, QStringLiteral("height")))
        .boundedTo({limits::Pixels, limits::Pixels});
}

QStringList pointAddresses(const QDomElement &element, int count)
{
    return numberedAddresses(element.firstChildElement(QStringLiteral("key")), QStringLiteral("POINT"), 1,
                             count);
}

/// Where the number of the point stands that was gone to; empty when it is not kept.
QString gotoAddress(const QDomElement &element)
{
    return childAddresses(element).value(1);
}

} // namespace

QWidget *PtzVideoInputControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *view = new PtzVideoInput(parent);
    view->setPreferredSize(pictureSize(control.element));
    return view;
}

const QMetaObject &PtzVideoInputControl::widgetClass() const
{
    return PtzVideoInput::staticMetaObject;
}

ChangeSignal PtzVideoInputControl::changeSignal() const
{
    return {SIGNAL(signal_Pixmap_ready()), SLOT(onCtrlChanged())};
}

QStringList PtzVideoInputControl::assignments(ControlContext &context, const Control &control) const
{
    const QString address = firstAddress(control.element);
    const QSize size = qobject_cast<PtzVideoInput *>(control.widget)->pixmap().size();
    const QString text = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
    // A picture comes many times a second, another size hardly ever.
    if (address.isEmpty() || context.store().value(address) == text)
        return {};
    return {OrbSetup::path(address) + u'/' + text};
}

QWidget *PtzCalibratorControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    const int asked = intAttribute(control.element, QStringLiteral("points"));
    const int points = asked > 0 ? std::min(asked, limits::CalibrationPoints) : UsualPoints;
    const bool isWithinLimits = context.take(ControlContext::ListCells, points);
    auto *calibrator = new PtzCalibrator(isWithinLimits ? points : 1, parent);
    calibrator->setPreferredSize(pictureSize(control.element));
    return calibrator;
}

const QMetaObject &PtzCalibratorControl::widgetClass() const
{
    return PtzCalibrator::staticMetaObject;
}

ChangeSignal PtzCalibratorControl::changeSignal() const
{
    return {SIGNAL(signal_Point_calibrated(int)), SLOT(onCtrlChanged(int))};
}

ChangeSignal PtzCalibratorControl::secondChangeSignal() const
{
    return {SIGNAL(signal_Goto_point_selected(int)), SLOT(onCtrlChanged(int))};
}

bool PtzCalibratorControl::load(ControlContext &context, const Control &control) const
{
    auto *calibrator = qobject_cast<PtzCalibrator *>(control.widget);
    QStringList points;
    for (const QString &address : pointAddresses(control.element, int(calibrator->points().size())))
        points.append(context.value(control, address));
    // Without a key the points are the user's alone.
    const bool hasMoved = !points.isEmpty() && calibrator->setPoints(points);
    const QString address = gotoAddress(control.element);
    const bool hasGone =
        !address.isEmpty() && calibrator->setGotoPoint(context.value(control, address).toInt());
    return hasMoved || hasGone;
}

QStringList PtzCalibratorControl::assignments(ControlContext &context, const Control &control) const
{
    const auto *calibrator = qobject_cast<PtzCalibrator *>(control.widget);
    const QStringList points = calibrator->points();
    const QStringList addresses = pointAddresses(control.element, int(points.size()));
    QStringList result;
    for (qsizetype point = 0; point < addresses.size(); ++point) {
        if (context.store().value(addresses[point]) != points[point])
            result.append(OrbSetup::path(addresses[point]) + u'/' + points[point]);
    }
    const QString address = gotoAddress(control.element);
    const int gone = calibrator->gotoPoint();
    if (!address.isEmpty() && gone != 0 && context.store().value(address).toInt() != gone)
        result.append(OrbSetup::path(address) + u'/' + QString::number(gone));
    return result;
}

QWidget *PtzCrossViewControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *view = new PtzCrossView(parent);
    view->setPreferredSize(pictureSize(control.element));
    return view;
}

const QMetaObject &PtzCrossViewControl::widgetClass() const
{
    return PtzCrossView::staticMetaObject;
}

} // namespace paravue
