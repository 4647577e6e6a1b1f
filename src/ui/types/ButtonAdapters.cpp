#include "controls/K9mButton.h"
#include "ui/base/ColouredButton.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/AdapterTexts.h"

#include <QPushButton>

#include <memory>

namespace paravue
{
namespace
{

const QStringList OnAndOff{QStringLiteral("on"), QStringLiteral("off")};

QString stateText(bool isOn)
{
    return OnAndOff[isOn ? 0 : 1];
}

bool isCheckable(const QDomElement &element)
{
    return element.attribute(QStringLiteral("checkable")) == QLatin1String("true");
}

/// Base of the adapters of buttons. A button writes nothing itself; its actions do.
template <class Button>
class ButtonAdapter : public TypedAdapter<Button>
{
public:
    ButtonAdapter()
        : TypedAdapter<Button>(
              {.changes = {onSignal<&Button::clicked>},
               .attributes = {{"checkable", AttributeRule::Word, {"true", "false"}},
                              {"color", AttributeRule::Word, {"green", "blue", "darkCyan", "red"}}},
               .children = {{"text"}},
               .runsCalls = true})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        auto *button = new Button(parent);
        button->setText(caption(context, control));
        // An auto-default button would be pressed by Enter in any field of its page.
        button->setAutoDefault(false);
        button->setCheckable(isCheckable(control.element));
        colourButton(*button, control.element.attribute(QStringLiteral("color")));
        return button;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        Button &button = this->widget(control);
        const QString text = caption(context, control);
        if (button.text() == text)
            return false;
        button.setText(text);
        return true;
    }
};

class PushButtonAdapter : public ButtonAdapter<QPushButton>
{
public:
    QString callState(const Control &control) const override
    {
        const QPushButton &button = widget(control);
        return button.isCheckable() ? stateText(button.isChecked()) : QString();
    }

    QStringList callStates(const QDomElement &element) const override
    {
        return isCheckable(element) ? OnAndOff : QStringList();
    }
};

/// A button with a lamp. With a "key" the lamp is on when the value there is "on"; without one the state of a
/// checkable button is the user's. Its actions have the states "on" and "off" when it is checkable or has a
/// key.
class K9mButtonAdapter : public ButtonAdapter<K9mButton>
{
public:
    bool load(ControlContext &context, const Control &control) const override
    {
        const bool newCaption = ButtonAdapter::load(context, control);
        K9mButton &button = widget(control);
        const QString key = firstAddress(control.element);
        if (key.isEmpty())
            return newCaption;
        const bool before = button.isOn();
        button.setState(context.value(control, key));
        return newCaption || button.isOn() != before;
    }

    QString actionState(const Control &control) const override
    {
        return hasStates(control.element) ? stateText(widget(control).isOn()) : QString();
    }

    QStringList actionStates(const QDomElement &element) const override
    {
        return hasStates(element) ? OnAndOff : QStringList();
    }

private:
    static bool hasStates(const QDomElement &element)
    {
        return isCheckable(element) || !firstAddress(element).isEmpty();
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makePushButtonAdapter()
{
    return std::make_unique<PushButtonAdapter>();
}

std::unique_ptr<const ControlAdapter> makeK9mButtonAdapter()
{
    return std::make_unique<K9mButtonAdapter>();
}

} // namespace paravue
