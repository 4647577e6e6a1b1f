#pragma once

#include "ui/binding/ControlAdapter.h"

#include <QDomElement>

namespace paravue
{

class InterfaceDocument;
class SecretKeys;

/// The fields that a description marks as secret: those that hide what is typed into them, and any control
/// with secret="yes".
class SecretFields
{
public:
    static bool isMarked(const QDomElement &item);
    /// Marks the values that such fields hold, those of dialogs included.
    static void markValues(const InterfaceDocument &document, AdapterLookup adapterOf, SecretKeys &secrets);
};

} // namespace paravue
