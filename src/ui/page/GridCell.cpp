#include "ui/page/GridCell.h"

#include "ui/base/Alignment.h"
#include "ui/base/UiLimits.h"
#include "ui/description/ElementAttributes.h"
#include "ui/description/InterfaceDocument.h"

namespace paravue
{
namespace
{

const QString columnAttribute = QStringLiteral("column");
const QString rowAttribute = QStringLiteral("row");

bool isWithinGrid(int index, int span)
{
    return index >= 0 && index < limits::GridIndex && span <= limits::GridIndex - index;
}

} // namespace

GridCell GridCell::of(const ElementAttributes &item)
{
    return {CellPlace::of(item), horizontalAlignment(item.text(QLatin1StringView("alignment"))) |
                                     verticalAlignment(item.text(QLatin1StringView("valign")))};
}

bool GridCell::isWithinLimits() const
{
    return isWithinGrid(row, rowSpan) && isWithinGrid(column, columnSpan);
}

GridLine GridLine::of(const QDomElement &stretch)
{
    if (stretch.hasAttribute(columnAttribute))
        return {Column, intAttribute(stretch, columnAttribute)};
    if (stretch.hasAttribute(rowAttribute))
        return {Row, intAttribute(stretch, rowAttribute)};
    return {};
}

bool GridLine::isWithinLimits() const
{
    return isWithinGrid(index, 1);
}

LayoutItem layoutItem(const QString &type)
{
    if (type == QLatin1String("gridlayout"))
        return LayoutItem::Grid;
    return type == QLatin1String("spacer") ? LayoutItem::Spacer : LayoutItem::None;
}

const QList<AttributeRule> &cellAttributes()
{
    using Rule = AttributeRule;
    static const QList<Rule> rules{
        {rowAttribute},
        {columnAttribute},
        {"rowSpan"},
        {"columnSpan"},
        {"alignment", Rule::Word, {"left", "center", "right"}},
        {"valign", Rule::Word, {"top", "center", "bottom"}},
    };
    return rules;
}

QList<AttributeRule> layoutAttributes(LayoutItem layout)
{
    return layout == LayoutItem::Spacer ? QList<AttributeRule>{orientationRule()} : QList<AttributeRule>();
}

const QList<AttributeRule> &controlAttributes()
{
    using Rule = AttributeRule;
    static const QList<Rule> rules{
        {"width"},
        {"height"},
        {"enabled", Rule::Word, {"yes", "no"}},
        {"visible", Rule::Word, {"yes", "no"}},
        {"textside", Rule::Word, {"left", "right"}},
    };
    return rules;
}

const AttributeRule &orientationRule()
{
    static const AttributeRule rule{"orientation", AttributeRule::Word, {"horizontal", "vertical"}};
    return rule;
}

const AttributeRule &secretRule()
{
    static const AttributeRule rule{"secret", AttributeRule::Word, {"no", "yes"}};
    return rule;
}

const ElementRule &stretchRule()
{
    static const ElementRule rule{"stretch", {{rowAttribute}, {columnAttribute}}};
    return rule;
}

} // namespace paravue
