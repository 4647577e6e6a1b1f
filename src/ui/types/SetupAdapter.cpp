#include "entry/cSetupWidget.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"

#include <memory>

namespace paravue
{
namespace
{

/// A hidden cSetupWidget on the store of the window, whose slots actions can call.
class SetupAdapter : public TypedAdapter<cSetupWidget>
{
public:
    SetupAdapter() : TypedAdapter({.keys = {}}) {}

    QWidget *create(ControlContext &context, const Control &, QWidget *parent) const override
    {
        auto *setup = new cSetupWidget(&context.store());
        setup->setParent(parent);
        return setup;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeSetupAdapter()
{
    return std::make_unique<SetupAdapter>();
}

} // namespace paravue
