#include "ui/base/Alignment.h"
#include "ui/base/SafeText.h"
#include "ui/base/TextLabel.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/AdapterTexts.h"

#include <QDateTime>
#include <QLabel>

#include <memory>

namespace paravue
{
namespace
{

const QString valueTag = QStringLiteral("value");
const QString choiceTag = QStringLiteral("choice");

/// The words for \a value: those of the choice with that value, or the date that it stands for, or the value
/// itself with its unit.
QString inWords(ControlContext &context, const Control &control, const QString &value)
{
    for (QDomElement choice = control.element.firstChildElement(choiceTag); !choice.isNull();
         choice = choice.nextSiblingElement(choiceTag)) {
        if (choice.attribute(valueTag) == value)
            return context.text(control, choice.text());
    }
    const QString format = control.element.attribute(QStringLiteral("format"));
    const QDateTime stored = QDateTime::fromString(value, QStringLiteral("yyyyMMddHHmmss"));
    // The recorder's clock is not this computer's: an hour that the local time zone skips exists there.
    const QDateTime date(stored.date(), stored.time(), Qt::UTC);
    if (!format.isEmpty() && date.isValid())
        return date.toString(format);
    return value.isEmpty() ? value : value + unitBehind(context, control);
}

/// A text or, with a "value", what is stored at the address there. An empty "value" is a tag.
class LabelAdapter : public TypedAdapter<QLabel>
{
public:
    LabelAdapter()
        : TypedAdapter({.attributes = {{"format", AttributeRule::Text}},
                        .children = {{"text"}, {choiceTag, {{valueTag, AttributeRule::Text}}}},
                        .keys = {{.tag = valueTag}},
                        .showsUnit = true})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *label = new TextLabel(parent);
        label->setAlignment(horizontalAlignment(control.element.attribute(QStringLiteral("alignment"))) |
                            verticalAlignment(control.element.attribute(QStringLiteral("valign"))));
        return label;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        QLabel &label = widget(control);
        const QString address = addressText(control.element.firstChildElement(valueTag));
        const QString text = address.isEmpty() ? caption(context, control)
                                               : inWords(context, control, context.value(control, address));
        if (label.text() == text)
            return false;
        label.setTextFormat(safeTextFormat(text));
        label.setText(text);
        return true;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeLabelAdapter()
{
    return std::make_unique<LabelAdapter>();
}

} // namespace paravue
