#include "ui/types/BasicControls.h"

#include "store/OrbSetup.h"
#include "ui/base/Alignment.h"
#include "ui/base/SafeText.h"
#include "ui/base/WindowLook.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/PatternValidator.h"

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

namespace paravue
{
namespace
{

QString caption(ControlContext &context, const Control &control)
{
    return context.text(control, control.element.firstChildElement(QStringLiteral("text")).text());
}

/// For every key of the control: its address with \a value.
QStringList assignmentsToKeys(const Control &control, const QString &value)
{
    QStringList result;
    for (const QString &key : childAddresses(control.element))
        result.append(OrbSetup::path(key) + u'/' + value);
    return result;
}

} // namespace

QWidget *LabelControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *label = new QLabel(parent);
    label->setAlignment(horizontalAlignment(control.element.attribute(QStringLiteral("alignment"))) |
                        verticalAlignment(control.element.attribute(QStringLiteral("valign"))));
    return label;
}

const QMetaObject &LabelControl::widgetClass() const
{
    return QLabel::staticMetaObject;
}

bool LabelControl::load(ControlContext &context, const Control &control) const
{
    auto *label = qobject_cast<QLabel *>(control.widget);
    const QString text = caption(context, control);
    if (label->text() == text)
        return false;
    label->setTextFormat(safeTextFormat(text));
    label->setText(text);
    return true;
}

QWidget *EditControl::create(ControlContext &, const Control &control, QWidget *parent) const
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

const QMetaObject &EditControl::widgetClass() const
{
    return QLineEdit::staticMetaObject;
}

ChangeSignal EditControl::changeSignal() const
{
    return {SIGNAL(textChanged(QString)), SLOT(onCtrlChanged(QString))};
}

bool EditControl::load(ControlContext &context, const Control &control) const
{
    auto *edit = qobject_cast<QLineEdit *>(control.widget);
    const QStringList keys = childAddresses(control.element);
    if (keys.isEmpty())
        return false;
    const QString before = edit->text();
    if (const QString value = context.value(control, keys.first()); before != value) {
        const QSignalBlocker silent(edit);
        edit->setText(value);
    }
    return edit->text() != before;
}

QStringList EditControl::assignments(ControlContext &, const Control &control) const
{
    return assignmentsToKeys(control, qobject_cast<QLineEdit *>(control.widget)->text());
}

bool EditControl::isTyped(const Control &control) const
{
    return qobject_cast<QLineEdit *>(control.widget)->isModified();
}

QString EditControl::actionState(const Control &control) const
{
    const auto *edit = qobject_cast<QLineEdit *>(control.widget);
    return edit->text().isEmpty() ? QStringLiteral("empty") : QStringLiteral("filled");
}

QWidget *CheckBoxControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    return new QCheckBox(caption(context, control), parent);
}

const QMetaObject &CheckBoxControl::widgetClass() const
{
    return QCheckBox::staticMetaObject;
}

ChangeSignal CheckBoxControl::changeSignal() const
{
    return {SIGNAL(stateChanged(int)), SLOT(onCtrlChanged(int))};
}

bool CheckBoxControl::load(ControlContext &context, const Control &control) const
{
    auto *box = qobject_cast<QCheckBox *>(control.widget);
    bool changed = false;
    if (const QString text = caption(context, control); box->text() != text) {
        box->setText(text);
        changed = true;
    }
    const QString key = firstAddress(control.element);
    // Without a key the box begins like one whose value is missing, and then is the user's.
    if (key.isEmpty() && control.loaded)
        return changed;
    const QString value = key.isEmpty() ? QString() : context.value(control, key);
    const bool offByDefault = control.element.attribute(QStringLiteral("default")) == QLatin1String("off");
    const bool checked = offByDefault ? value == QLatin1String("on") : value != QLatin1String("off");
    if (box->isChecked() == checked)
        return changed;
    const QSignalBlocker silent(box);
    box->setChecked(checked);
    return true;
}

QStringList CheckBoxControl::assignments(ControlContext &, const Control &control) const
{
    return assignmentsToKeys(control, actionState(control));
}

QString CheckBoxControl::actionState(const Control &control) const
{
    const auto *box = qobject_cast<QCheckBox *>(control.widget);
    return box->isChecked() ? QStringLiteral("on") : QStringLiteral("off");
}

QWidget *PushButtonControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    auto *button = new QPushButton(parent);
    prepare(*button, context, control);
    return button;
}

const QMetaObject &PushButtonControl::widgetClass() const
{
    return QPushButton::staticMetaObject;
}

void PushButtonControl::prepare(QPushButton &button, ControlContext &context, const Control &control)
{
    button.setText(caption(context, control));
    // A button that becomes the default by itself would be pressed by Enter in any field of its page.
    button.setAutoDefault(false);
    button.setCheckable(control.element.attribute(QStringLiteral("checkable")) == QLatin1String("true"));
    colourButton(button, control.element.attribute(QStringLiteral("color")));
}

ChangeSignal PushButtonControl::changeSignal() const
{
    return {SIGNAL(clicked()), SLOT(onCtrlChanged())};
}

bool PushButtonControl::load(ControlContext &context, const Control &control) const
{
    auto *button = qobject_cast<QPushButton *>(control.widget);
    const QString text = caption(context, control);
    if (button->text() == text)
        return false;
    button->setText(text);
    return true;
}

QWidget *SeparatorControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *line = new QFrame(parent);
    const bool horizontal = fills(control.element) == Qt::Horizontal;
    line->setFrameShape(horizontal ? QFrame::HLine : QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

const QMetaObject &SeparatorControl::widgetClass() const
{
    return QFrame::staticMetaObject;
}

Qt::Orientations SeparatorControl::fills(const QDomElement &item) const
{
    return item.attribute(QStringLiteral("orientation")) == QLatin1String("horizontal") ? Qt::Horizontal
                                                                                        : Qt::Vertical;
}

} // namespace paravue
