#pragma once

#include <QString>

class QWidget;

namespace paravue
{

class Bindings;
class ControlContext;

/// Calls a function of the store through its queue when the call \a slot of \a target is one: callSetup() of
/// a "setup" control. Returns false for any other call.
bool callFunction(ControlContext &context, Bindings &bindings, const QWidget &target, const QString &slot,
                  const QString &param);

} // namespace paravue
