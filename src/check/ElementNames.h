#pragma once

#include <QString>

namespace paravue
{

inline const QString itemTag = QStringLiteral("item");
inline const QString typeName = QStringLiteral("type"); ///< attribute of items and actions

} // namespace paravue
