#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/AdapterTexts.h"

#include <QCheckBox>
#include <QSignalBlocker>

#include <memory>

namespace paravue
{
namespace
{

class CheckBoxAdapter : public TypedAdapter<QCheckBox>
{
public:
    CheckBoxAdapter()
        : TypedAdapter({.changes = {onSignal<&QCheckBox::stateChanged>},
                        .attributes = {{"default", AttributeRule::Word, {"on", "off"}}},
                        .children = {{"text"}},
                        .actionStates = {"on", "off"},
                        .runsCalls = true,
                        .hasUnfitValues = true})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        return new QCheckBox(caption(context, control), parent);
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        QCheckBox &box = widget(control);
        bool changed = false;
        if (const QString text = caption(context, control); box.text() != text) {
            box.setText(text);
            changed = true;
        }
        const QString key = firstAddress(control.element);
        // Without a key the box starts like one whose value is missing and then keeps the user's state.
        if (key.isEmpty() && control.loaded)
            return changed;
        const QString value = key.isEmpty() ? QString() : context.value(control, key);
        const bool offByDefault =
            control.element.attribute(QStringLiteral("default")) == QLatin1String("off");
        const bool checked = offByDefault ? value == QLatin1String("on") : value != QLatin1String("off");
        if (box.isChecked() == checked)
            return changed;
        const QSignalBlocker silent(box);
        box.setChecked(checked);
        return true;
    }

    std::optional<QString> unfitValue(ControlContext &context, const Control &control) const override
    {
        const QString key = firstAddress(control.element);
        const QString value = key.isEmpty() ? QString() : context.value(control, key);
        // Without a value the box shows what a recorder without it does.
        return value.isEmpty() || value == QLatin1String("on") || value == QLatin1String("off")
                   ? std::nullopt
                   : std::optional(value);
    }

    QList<Assignment> assignments(ControlContext &, const Control &control) const override
    {
        return assignmentsToKeys(control, actionState(control));
    }

    QString actionState(const Control &control) const override
    {
        return widget(control).isChecked() ? QStringLiteral("on") : QStringLiteral("off");
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeCheckBoxAdapter()
{
    return std::make_unique<CheckBoxAdapter>();
}

} // namespace paravue
