#include "controls/PtzCalibrator.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "store/OrbSetup.h"
#include "ui/base/UiLimits.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedAddresses.h"
#include "ui/types/AdapterTexts.h"

#include <algorithm>
#include <memory>

// Controls for cameras with pan, tilt and zoom. Their pictures come from time tasks, and the position of the
// camera from calls of slot_Set_PTZ_pos.
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

/// The address of the number of the point that was gone to last; empty when it is not stored.
QString gotoAddress(const QDomElement &element)
{
    return childAddresses(element).value(1);
}

/// What a camera sees of its range without zoom: the attribute in percent, half of it without one.
double seenShare(const QDomElement &element, const QString &attribute)
{
    const int percent = intAttribute(element, attribute);
    return percent > 0 ? std::min(percent, 100) / 100.0 : 0.5;
}

/// The live picture. With a "key" the size of the picture is kept there as "704x576", whenever a picture of
/// another size has come.
class PtzVideoInputAdapter : public TypedAdapter<PtzVideoInput>
{
public:
    PtzVideoInputAdapter()
        : TypedAdapter({.changes = {onSignal<&PtzVideoInput::signal_Pixmap_ready>},
                        .attributes = {{"seenPan"}, {"seenTilt"}},
                        .sizesItself = true})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *view = new PtzVideoInput(parent);
        view->setPreferredSize(pictureSize(control.element));
        view->steering().setSeenShares({seenShare(control.element, QStringLiteral("seenPan")),
                                        seenShare(control.element, QStringLiteral("seenTilt"))});
        return view;
    }

    QList<Assignment> assignments(ControlContext &context, const Control &control) const override
    {
        const QString address = firstAddress(control.element);
        const QSize size = widget(control).pixmap().size();
        const QString text = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
        // Pictures come many times a second but rarely change their size.
        if (address.isEmpty() || context.store().value(address) == text)
            return {};
        return {{OrbSetup::path(address), text}};
    }
};

/// Calibration points. Attribute "points" is how many there are (4 when absent). They stand at addresses made
/// of the first "key" and the number of the point, counted from 1: with the key "ptz/cam0/POINT" at
/// "ptz/cam0/POINT1" and so on; controls/CalibrationPoint.h documents the texts. A second "key" is the
/// address of the number of the point that was gone to last.
class PtzCalibratorAdapter : public TypedAdapter<PtzCalibrator>
{
public:
    PtzCalibratorAdapter()
        : TypedAdapter({.changes = {onSignal<&PtzCalibrator::signal_Point_calibrated>,
                                    onSignal<&PtzCalibrator::signal_Goto_point_selected>},
                        .attributes = {{"points"}},
                        .keys = {{KeyRule::Rows}},
                        .sizesItself = true,
                        .cost = 8})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        const int asked = intAttribute(control.element, QStringLiteral("points"));
        const int points = asked > 0 ? std::min(asked, limits::CalibrationPoints) : UsualPoints;
        const bool isWithinLimits = context.take(ControlContext::ListCells, points);
        auto *calibrator = new PtzCalibrator(isWithinLimits ? points : 1, parent);
        calibrator->setPreferredSize(pictureSize(control.element));
        return calibrator;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        PtzCalibrator &calibrator = widget(control);
        const QStringList points =
            valuesAt(context, control, pointAddresses(control.element, int(calibrator.points().size())));
        // Without a key the points are not stored; the user's points stay.
        const bool hasMoved = !points.isEmpty() && calibrator.setPoints(points);
        const QString address = gotoAddress(control.element);
        const bool hasGone =
            !address.isEmpty() && calibrator.setGotoPoint(context.value(control, address).toInt());
        return hasMoved || hasGone;
    }

    QList<Assignment> assignments(ControlContext &context, const Control &control) const override
    {
        const PtzCalibrator &calibrator = widget(control);
        const QStringList points = calibrator.points();
        QList<Assignment> result =
            changedValues(context, pointAddresses(control.element, int(points.size())), points);
        const QString address = gotoAddress(control.element);
        const int gone = calibrator.gotoPoint();
        if (!address.isEmpty() && gone != 0 && context.store().value(address).toInt() != gone)
            result.append({OrbSetup::path(address), QString::number(gone)});
        return result;
    }
};

/// A cross hair where the camera looks. Has no value.
class PtzCrossViewAdapter : public TypedAdapter<PtzCrossView>
{
public:
    PtzCrossViewAdapter() : TypedAdapter({.sizesItself = true}) {}

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *view = new PtzCrossView(parent);
        view->setPreferredSize(pictureSize(control.element));
        return view;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makePtzVideoInputAdapter()
{
    return std::make_unique<PtzVideoInputAdapter>();
}

std::unique_ptr<const ControlAdapter> makePtzCalibratorAdapter()
{
    return std::make_unique<PtzCalibratorAdapter>();
}

std::unique_ptr<const ControlAdapter> makePtzCrossViewAdapter()
{
    return std::make_unique<PtzCrossViewAdapter>();
}

} // namespace paravue
