#pragma once

#include "ui/base/ElementRules.h"
#include "ui/description/DescribedGrid.h"

#include <QDomElement>
#include <QList>
#include <Qt>

namespace paravue
{

/// Where a grid puts an item.
struct GridCell : CellPlace {
    Qt::Alignment alignment;

    static GridCell of(const ElementAttributes &item);
    /// False when the grid would have more rows or columns than a description may ask for.
    bool isWithinLimits() const;
};

/// The row or column that a "stretch" is about.
struct GridLine {
    enum Kind { None, Row, Column };

    Kind kind = None;
    int index = 0;

    static GridLine of(const QDomElement &stretch);
    bool isWithinLimits() const;
};

/// What a grid may hold besides controls.
enum class LayoutItem { None, Grid, Spacer };

/// The type of an item, from its attribute "type".
LayoutItem layoutItem(const QString &type);

/// What every item of a grid may have.
const QList<AttributeRule> &cellAttributes();
/// What an item may have besides when it is a grid or a spacer.
QList<AttributeRule> layoutAttributes(LayoutItem layout);
/// What every control may have besides, and windows as far as they do not say otherwise.
const QList<AttributeRule> &controlAttributes();
/// Which of the two orientations an item has.
const AttributeRule &orientationRule();
const ElementRule &stretchRule();
/// Of a control with keys: its values are shown as dots wherever values are listed.
const AttributeRule &secretRule();

} // namespace paravue
