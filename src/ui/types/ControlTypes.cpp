#include "ui/types/ControlTypes.h"

#include "ui/binding/ControlAdapter.h"

#include <QHash>

#include <memory>
#include <unordered_map>

// The types of controls as descriptions name them, and their adapters. A new type is one line here and one
// file that defines the function make##ADAPTER(). Adapters do not register themselves, as linkers drop
// unreferenced objects of static libraries.
#define PARAVUE_CONTROL_TYPES(TYPE)                                                                          \
    TYPE("label", LabelAdapter)                                                                              \
    TYPE("edit", EditAdapter)                                                                                \
    TYPE("dropdown", DropDownAdapter)                                                                        \
    TYPE("checkbox", CheckBoxAdapter)                                                                        \
    TYPE("scroll", ScrollAdapter)                                                                            \
    TYPE("separator", SeparatorAdapter)                                                                      \
    TYPE("tabwidget", TabWidgetAdapter)                                                                      \
    TYPE("datetime", DateTimeAdapter)                                                                        \
    TYPE("pushbutton", PushButtonAdapter)                                                                    \
    TYPE("list", ListAdapter)                                                                                \
    TYPE("accesslist", UserListAdapter)                                                                      \
    TYPE("softlist", PackageListAdapter)                                                                     \
    TYPE("orbpie", ProgressPieAdapter)                                                                       \
    TYPE("progressbar", ProgressBarAdapter)                                                                  \
    TYPE("setup", SetupAdapter)                                                                              \
    TYPE("diskfitness", DiskFitnessAdapter)                                                                  \
    TYPE("k9m_button", K9mButtonAdapter)                                                                     \
    TYPE("online", LiveViewAdapter)                                                                          \
    TYPE("maskctrl", MaskAdapter)                                                                            \
    TYPE("PTZAlarm", AlarmZoneAdapter)                                                                       \
    TYPE("vornschedule", ScheduleAdapter)                                                                    \
    TYPE("PTZvideoin", PtzVideoInputAdapter)                                                                 \
    TYPE("PTZCalibrator", PtzCalibratorAdapter)                                                              \
    TYPE("PTZcrossView", PtzCrossViewAdapter)

namespace paravue
{

using AdapterPointer = std::unique_ptr<const ControlAdapter>;

#define PARAVUE_DECLARE(name, adapter) AdapterPointer make##adapter();
PARAVUE_CONTROL_TYPES(PARAVUE_DECLARE)
#undef PARAVUE_DECLARE

namespace
{

using Adapters = std::unordered_map<QString, AdapterPointer>;

const Adapters &adapters()
{
    static const Adapters all = [] {
        Adapters made;
#define PARAVUE_MAKE(name, adapter) made.emplace(QStringLiteral(name), make##adapter());
        PARAVUE_CONTROL_TYPES(PARAVUE_MAKE)
#undef PARAVUE_MAKE
        return made;
    }();
    return all;
}

} // namespace

const ControlAdapter *adapterOfType(const QString &type)
{
    const auto found = adapters().find(type);
    return found == adapters().end() ? nullptr : found->second.get();
}

void forEachControlType(const std::function<void(const QString &name, const ControlAdapter &adapter)> &visit)
{
    for (const auto &[name, adapter] : adapters())
        visit(name, *adapter);
}

} // namespace paravue
