#include "ui/binding/ControlType.h"

#include "ui/page/PageBuilder.h"
#include "ui/types/BasicControls.h"
#include "ui/types/CellGridControls.h"
#include "ui/types/ChoiceControls.h"
#include "ui/types/DeviceControls.h"
#include "ui/types/GaugeControls.h"
#include "ui/types/ListControls.h"
#include "ui/types/PtzControls.h"
#include "ui/types/ScheduleControl.h"
#include "ui/types/ViewControls.h"

#include <QHash>

#include <memory>
#include <unordered_map>

namespace paravue
{
namespace
{

using Types = std::unordered_map<QString, std::unique_ptr<const GridItemType>>;

template <typename Type>
void add(Types &types, const char *name)
{
    types.emplace(QString::fromLatin1(name), std::make_unique<Type>());
}

Types makeTypes()
{
    Types types;
    add<LabelControl>(types, "label");
    add<EditControl>(types, "edit");
    add<DropDownControl>(types, "dropdown");
    add<CheckBoxControl>(types, "checkbox");
    add<ScrollControl>(types, "scroll");
    add<SeparatorControl>(types, "separator");
    add<NestedGrid>(types, "gridlayout");
    add<Spacer>(types, "spacer");
    add<TabWidgetControl>(types, "tabwidget");
    add<DateTimeControl>(types, "datetime");
    add<PushButtonControl>(types, "pushbutton");
    add<ListControl>(types, "list");
    add<AccessListControl>(types, "accesslist");
    add<SoftListControl>(types, "softlist");
    add<ProgressPieControl>(types, "orbpie");
    add<ProgressBarControl>(types, "progressbar");
    add<SetupControl>(types, "setup");
    add<DiskFitnessControl>(types, "diskfitness");
    add<K9mButtonControl>(types, "k9m_button");
    add<OnlineControl>(types, "online");
    add<MaskControl>(types, "maskctrl");
    add<AlarmZoneControl>(types, "PTZAlarm");
    add<ScheduleControl>(types, "vornschedule");
    add<PtzVideoInputControl>(types, "PTZvideoin");
    add<PtzCalibratorControl>(types, "PTZCalibrator");
    add<PtzCrossViewControl>(types, "PTZcrossView");
    return types;
}

} // namespace

GridItemType::~GridItemType() = default;

void ControlType::addTo(PageBuilder &builder, QGridLayout &grid, const GridCell &cell,
                        const QDomElement &item) const
{
    builder.addControl(*this, grid, cell, item);
}

const GridItemType *gridItemType(const QString &name)
{
    static const Types types = makeTypes();
    const auto found = types.find(name);
    return found == types.end() ? nullptr : found->second.get();
}

} // namespace paravue
