#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace paravue
{

class Bindings;
class ControlContext;

/// Makes a \a call of the function \a name that a user has started, now, later, or not at all.
using FunctionPermit = std::function<void(const QString &name, const std::function<void()> &call)>;

/// Calls a function of the store through its queue when the call \a slot of \a target is one: callSetup() of
/// a "setup" control. Returns false for any other call. Calls of users go through \a permit if there is one.
bool callFunction(ControlContext &context, Bindings &bindings, const FunctionPermit &permit,
                  const QWidget &target, const QString &slot, const QString &param);

} // namespace paravue
