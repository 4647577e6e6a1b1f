#include "ui/base/Alignment.h"
#include "ui/base/SafeText.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/types/AdapterTexts.h"

#include <QLabel>

#include <memory>

namespace paravue
{
namespace
{

class LabelAdapter : public TypedAdapter<QLabel>
{
public:
    LabelAdapter() : TypedAdapter(ControlTraits{}) {}

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *label = new QLabel(parent);
        label->setAlignment(horizontalAlignment(control.element.attribute(QStringLiteral("alignment"))) |
                            verticalAlignment(control.element.attribute(QStringLiteral("valign"))));
        return label;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        QLabel &label = widget(control);
        const QString text = caption(context, control);
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
