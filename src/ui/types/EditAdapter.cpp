#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/AdapterTexts.h"
#include "ui/types/PatternValidator.h"

#include <QLineEdit>
#include <QSignalBlocker>

#include <memory>

namespace paravue
{
namespace
{

const QString emptyState = QStringLiteral("empty");
const QString filledState = QStringLiteral("filled");

class EditAdapter : public TypedAdapter<QLineEdit>
{
public:
    EditAdapter()
        : TypedAdapter({.changes = {onSignal<&QLineEdit::textChanged>},
                        .attributes = {{"validator", AttributeRule::Pattern},
                                       {"inputMask", AttributeRule::Text},
                                       {"password", AttributeRule::Word, {"on", "off"}},
                                       {"minimum", AttributeRule::Limit},
                                       {"maximum", AttributeRule::Limit},
                                       {"required", AttributeRule::Word, {"no", "yes"}}},
                        .actionStates = {emptyState, filledState},
                        .hasUnfitValues = true})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *edit = new QLineEdit(parent);
        const QDomElement &element = control.element;
        if (element.hasAttribute(QStringLiteral("validator")))
            edit->setValidator(new PatternValidator(element.attribute(QStringLiteral("validator")), edit));
        if (element.hasAttribute(QStringLiteral("inputMask")))
            edit->setInputMask(element.attribute(QStringLiteral("inputMask")));
        if (element.attribute(QStringLiteral("password")) == QLatin1String("on"))
            edit->setEchoMode(QLineEdit::Password);
        return edit;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        QLineEdit &edit = widget(control);
        const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
        if (key.isNull())
            return false;
        const QString before = edit.text();
        if (const QString value = context.value(control, addressText(key)); before != value) {
            const QSignalBlocker silent(edit);
            edit.setText(value);
        }
        return edit.text() != before;
    }

    std::optional<QString> unfitValue(ControlContext &context, const Control &control) const override
    {
        const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
        const QString value = key.isNull() ? QString() : context.value(control, addressText(key));
        return value.isEmpty() || value == widget(control).text() ? std::nullopt : std::optional(value);
    }

    QList<Assignment> assignments(ControlContext &, const Control &control) const override
    {
        return assignmentsToKeys(control, widget(control).text());
    }

    bool isTyped(const Control &control) const override { return widget(control).isModified(); }

    QString actionState(const Control &control) const override
    {
        return widget(control).text().isEmpty() ? emptyState : filledState;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeEditAdapter()
{
    return std::make_unique<EditAdapter>();
}

} // namespace paravue
