#pragma once

#include <QString>

#include <functional>

namespace paravue
{

class ControlAdapter;

/// The adapter of the type of this name; null when there is none.
const ControlAdapter *adapterOfType(const QString &type);

/// Every type with its name.
void forEachControlType(const std::function<void(const QString &name, const ControlAdapter &adapter)> &visit);

} // namespace paravue
