#include "store/OrbSetup.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"

#include <QComboBox>
#include <QSignalBlocker>

#include <memory>

namespace paravue
{
namespace
{

/// A choice of a drop-down list: its caption, and the address with its value that choosing it writes.
struct Choice {
    QString caption;
    QString assignment;
};

/// The n-th text goes with the key inside it or, without one, with the n-th key beside the texts.
QList<Choice> choices(const QDomElement &element)
{
    const QStringList keys = childAddresses(element);
    QList<Choice> result;
    for (QDomElement text = element.firstChildElement(QStringLiteral("text")); !text.isNull();
         text = text.nextSiblingElement(QStringLiteral("text"))) {
        const QDomElement inner = text.firstChildElement(QStringLiteral("key"));
        const QString key = inner.isNull() ? keys.value(result.size()) : addressText(inner);
        result.append({ownText(text), key});
    }
    return result;
}

QList<Assignment> keySet(const QDomElement &element, int index)
{
    QDomElement set = element.firstChildElement(QStringLiteral("keyset"));
    for (; index > 0 && !set.isNull(); --index)
        set = set.nextSiblingElement(QStringLiteral("keyset"));
    QList<Assignment> result;
    for (const QString &assignment : set.text().split(u',')) {
        if (const QString trimmed = assignment.trimmed(); !trimmed.isEmpty())
            result.append(Assignment::fromText(trimmed));
    }
    return result;
}

bool showCaption(QComboBox &box, int index, const QString &caption)
{
    if (box.itemText(index) == caption)
        return false;
    box.setItemText(index, caption);
    return true;
}

/// Makes room for the present captions, those of another language. With the policy to follow them always, Qt
/// would make the window of the list for every box at once, which takes longer than all the rest of the box.
void fitAgain(QComboBox &box)
{
    box.setSizeAdjustPolicy(QComboBox::AdjustToContents);
    box.setSizeAdjustPolicy(QComboBox::AdjustToContentsOnFirstShow);
}

class DropDownAdapter : public TypedAdapter<QComboBox>
{
public:
    DropDownAdapter()
        : TypedAdapter({.changes = {onSignal<&QComboBox::activated>},
                        .children = {{"text", {}, {"key"}}, {"keyset"}},
                        .keys = {{KeyRule::Assignment}},
                        .runsCalls = true,
                        .hasUnfitValues = true})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        auto *box = new QComboBox(parent);
        for (const Choice &choice : choices(control.element))
            box->addItem(context.text(control, choice.caption), choice.assignment);
        return box;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        QComboBox &box = widget(control);
        const QSignalBlocker silent(box);
        // The captions were just set when the first values are loaded.
        const QList<Choice> entries = control.loaded ? choices(control.element) : QList<Choice>();
        int current = box.currentIndex();
        bool changed = false;
        for (int i = 0; i < box.count(); ++i) {
            changed |= control.loaded && showCaption(box, i, context.text(control, entries.value(i).caption));
            // Deliberate: of several entries that fit, the last one is shown.
            if (isStored(context, control, i))
                current = i;
        }
        if (changed)
            fitAgain(box);
        if (current == box.currentIndex())
            return changed;
        box.setCurrentIndex(current);
        return true;
    }

    std::optional<QString> unfitValue(ControlContext &context, const Control &control) const override
    {
        const QComboBox &box = widget(control);
        if (isStored(context, control, box.currentIndex()))
            return {};
        for (int i = 0; i < box.count(); ++i) {
            if (const QString assignment = box.itemData(i).toString(); !assignment.isEmpty())
                return context.value(control, OrbSetup::path(assignment));
        }
        return {};
    }

    QList<Assignment> assignments(ControlContext &, const Control &control) const override
    {
        const QComboBox &box = widget(control);
        QList<Assignment> result;
        if (const QString assignment = box.currentData().toString(); !assignment.isEmpty())
            result.append(Assignment::fromText(assignment));
        // The user chooses in an active window; a choice by other means writes its own value only.
        if (box.isActiveWindow())
            result.append(keySet(control.element, box.currentIndex()));
        return result;
    }

    /// Calls are for choices: each is the state with the name of its key.
    QString callState(const Control &control) const override
    {
        return widget(control).currentData().toString();
    }

    QStringList callStates(const QDomElement &element) const override
    {
        QStringList states;
        for (const Choice &choice : choices(element)) {
            if (!choice.assignment.isEmpty())
                states.append(choice.assignment);
        }
        return states;
    }

private:
    static bool isStored(ControlContext &context, const Control &control, int index)
    {
        const QString assignment = widget(control).itemData(index).toString();
        return !assignment.isEmpty() &&
               context.value(control, OrbSetup::path(assignment)) == OrbSetup::defValue(assignment);
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeDropDownAdapter()
{
    return std::make_unique<DropDownAdapter>();
}

} // namespace paravue
