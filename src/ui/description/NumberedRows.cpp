#include "ui/description/NumberedRows.h"

#include "ui/base/UiLimits.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedAddresses.h"

#include <algorithm>

namespace paravue
{

namespace
{

constexpr QSize UsualGrid(16, 12);

QDomElement firstKey(const QDomElement &element)
{
    return element.firstChildElement(QStringLiteral("key"));
}

int lineCount(const QDomElement &element, const QString &attribute, int usual)
{
    const int count = intAttribute(element, attribute);
    return count > 0 ? std::min(count, limits::CellGridLines) : usual;
}

} // namespace

QStringList dayAddresses(const QDomElement &schedule)
{
    const QStringList keys = childAddresses(schedule);
    if (keys.isEmpty() || keys.size() >= DaysOfSchedule)
        return keys.mid(0, DaysOfSchedule);
    return numberedAddresses(firstKey(schedule), QStringLiteral("DAY"), 0, DaysOfSchedule);
}

QList<QDomElement> scheduleKinds(const QDomElement &schedule)
{
    const QString tag = QStringLiteral("kind");
    QList<QDomElement> kinds;
    int seen = 0;
    for (QDomElement kind = schedule.firstChildElement(tag); !kind.isNull() && seen < MostKindsOfSchedule;
         kind = kind.nextSiblingElement(tag), ++seen) {
        if (kind.attribute(QStringLiteral("value")).toStdU32String().size() == 1)
            kinds.append(kind);
    }
    return kinds;
}

QSize cellGridSize(const QDomElement &grid)
{
    return {lineCount(grid, QStringLiteral("ctrlColumns"), UsualGrid.width()),
            lineCount(grid, QStringLiteral("ctrlRows"), UsualGrid.height())};
}

QStringList rowAddresses(const QDomElement &grid, int rows)
{
    return numberedAddresses(firstKey(grid), QStringLiteral("ROW"), 0, rows);
}

} // namespace paravue
