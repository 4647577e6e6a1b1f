#pragma once

#include "check/SourcePositions.h"

#include <QDomElement>
#include <QHash>
#include <QList>
#include <QString>

struct QMetaObject;

namespace paravue
{

class ControlAdapter;
class ProblemList;

/// Something that the actions of a description can act on.
struct ActionTarget {
    enum class Kind { None, Control, Window, Dialog };

    Kind kind = Kind::None;
    const ControlAdapter *adapter = nullptr; ///< of a control
    const QMetaObject *widgetClass = nullptr;
    QString name; ///< for messages: what it is
};

/// The parts of a description that a window is built from.
struct DescribedParts {
    struct Control {
        QDomElement element;
        const ControlAdapter *adapter;
    };
    QList<Control> controls;
    QList<QDomElement> dialogs; ///< every element with a page that no tab has
    QHash<ElementId, ActionTarget> targets;

    ActionTarget of(const QDomElement &element) const { return targets.value(elementId(element)); }
};

/// Finds the parts under \a root as the window does, and reports what it would leave out.
DescribedParts findParts(const QDomElement &root, ProblemList &problems);

} // namespace paravue
