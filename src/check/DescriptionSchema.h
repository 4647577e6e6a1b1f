#pragma once

#include "ParavueSetupExport.h"

#include <QByteArray>

namespace paravue
{

/// A RELAX NG schema (https://relaxng.org, XML syntax) of interface descriptions, made from the attributes
/// and children that the types of controls list. Editors use it to complete words; it knows nothing of
/// addresses, tags and texts, which checkDescription() looks at.
PARAVUE_EXPORT QByteArray descriptionSchema();

} // namespace paravue
