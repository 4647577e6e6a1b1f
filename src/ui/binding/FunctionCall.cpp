#include "ui/binding/FunctionCall.h"

#include "entry/cSetupWidget.h"
#include "store/ExchangeQueue.h"
#include "store/OrbSetup.h"
#include "ui/binding/Bindings.h"
#include "ui/binding/ControlContext.h"

namespace paravue
{

bool callFunction(ControlContext &context, Bindings &bindings, const FunctionPermit &permit,
                  const QWidget &target, const QString &slot, const QString &param)
{
    if (slot != QLatin1String("callSetup") || !qobject_cast<const cSetupWidget *>(&target))
        return false;
    const auto caller = context.isUnattended() ? ExchangeQueue::Caller::Task : ExchangeQueue::Caller::User;
    const qsizetype comma = param.indexOf(u',');
    const QString name = comma < 0 ? param : param.left(comma);
    const QString arg = comma < 0 ? QString() : param.mid(comma + 1);
    bindings.writeRunningValues(context.store().functionUse(name, arg).addresses);
    const auto call = [&context, name, arg, caller] {
        ExchangeQueue::of(context.store()).call(name, arg, caller);
    };
    if (permit && caller == ExchangeQueue::Caller::User)
        permit(name, call);
    else
        call();
    return true;
}

} // namespace paravue
