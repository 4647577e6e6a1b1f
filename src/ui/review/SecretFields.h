#pragma once

#include "ui/binding/ControlAdapter.h"

#include <QDomElement>
#include <QStringList>

namespace paravue
{

class InterfaceDocument;

/// The fields that a description marks as secret: those that hide what is typed into them, and any control
/// with secret="yes".
class SecretFields
{
public:
    static bool isMarked(const QDomElement &item);
    /// The paths of the values that such fields hold, those of dialogs included.
    static QStringList paths(const InterfaceDocument &document, AdapterLookup adapterOf);
};

} // namespace paravue
