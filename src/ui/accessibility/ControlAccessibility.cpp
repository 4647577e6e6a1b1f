#include "ui/accessibility/ControlAccessibility.h"

#include "controls/K9mButton.h"
#include "controls/LiveView.h"
#include "controls/OrbProgressPie.h"
#include "controls/PictureView.h"
#include "ui/accessibility/AccessibleControl.h"
#include "ui/accessibility/AccessibleList.h"
#include "ui/accessibility/ControlName.h"
#include "ui/accessibility/EditedText.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>

#include <functional>
#include <type_traits>
#include <utility>

namespace paravue
{
namespace
{

const char *const windowMark = "paravueWindow";

class AccessibleButton : public AccessibleControl
{
public:
    explicit AccessibleButton(QAbstractButton *button)
        : AccessibleControl(button, QAccessible::Button), m_button(button)
    {
    }

    QAccessible::Role role() const override
    {
        return m_button->isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleControl::state();
        state.checkable = m_button->isCheckable();
        state.checked = m_button->isChecked();
        state.pressed = m_button->isDown();
        const auto *push = qobject_cast<const QPushButton *>(m_button);
        state.defaultButton = push && push->isDefault();
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Accelerator)
            return m_button->shortcut().toString(QKeySequence::NativeText);
        // A lamp that the user cannot switch has no checkable state to read.
        const auto *lamp = qobject_cast<const K9mButton *>(m_button);
        if (kind == QAccessible::Value && lamp && !lamp->isCheckable())
            return lamp->isOn() ? K9mButton::tr("On") : K9mButton::tr("Off");
        return AccessibleControl::text(kind);
    }

    QStringList actionNames() const override
    {
        QStringList names = AccessibleControl::actionNames();
        if (m_button->isEnabled())
            names.prepend(m_button->isCheckable() ? toggleAction() : pressAction());
        return names;
    }

    void doAction(const QString &name) override
    {
        // Queued, so that the screen reader is answered at once: a click may open a dialog and wait for its
        // end.
        if (name == pressAction() || name == toggleAction())
            QMetaObject::invokeMethod(m_button, &QAbstractButton::click, Qt::QueuedConnection);
        else
            AccessibleControl::doAction(name);
    }

private:
    QAbstractButton *m_button;
};

/// An input line, by itself or as the inside of a field with arrow keys.
class AccessibleField : public AccessibleControl
{
public:
    AccessibleField(QWidget *field, QLineEdit *line, QAccessible::Role role)
        : AccessibleControl(field, role), m_text(line), m_steps(qobject_cast<QAbstractSpinBox *>(field))
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        void *found = m_text.cast(type);
        return found ? found : AccessibleControl::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleControl::state();
        m_text.addStates(state);
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_text.shownText() : AccessibleControl::text(kind);
    }

    void setText(QAccessible::Text kind, const QString &text) override
    {
        if (kind == QAccessible::Value)
            m_text.replaceAll(text);
        else
            AccessibleControl::setText(kind, text);
    }

    QStringList actionNames() const override
    {
        QStringList names = AccessibleControl::actionNames();
        if (m_steps && m_steps->isEnabled())
            names << increaseAction() << decreaseAction();
        return names;
    }

    void doAction(const QString &name) override
    {
        if (m_steps && m_steps->isEnabled() && name == increaseAction())
            m_steps->stepUp();
        else if (m_steps && m_steps->isEnabled() && name == decreaseAction())
            m_steps->stepDown();
        else
            AccessibleControl::doAction(name);
    }

private:
    EditedText m_text;
    QAbstractSpinBox *m_steps;
};

class AccessibleChoice : public AccessibleControl
{
public:
    explicit AccessibleChoice(QComboBox *box) : AccessibleControl(box, QAccessible::ComboBox), m_box(box) {}

    // Of the children only the list of choices is exposed.
    int childCount() const override { return 1; }
    QAccessibleInterface *child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(m_box->view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child && child->object() == m_box->view() ? 0 : -1;
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleControl::state();
        state.expandable = true;
        state.expanded = m_box->view()->isVisible();
        state.hasPopup = true;
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_box->currentText() : AccessibleControl::text(kind);
    }

    QStringList actionNames() const override
    {
        QStringList names = AccessibleControl::actionNames();
        if (m_box->isEnabled())
            names << showMenuAction() << pressAction();
        return names;
    }

    void doAction(const QString &name) override
    {
        if (name != showMenuAction() && name != pressAction())
            AccessibleControl::doAction(name);
        else if (m_box->view()->isVisible())
            m_box->hidePopup();
        else if (m_box->isEnabled())
            m_box->showPopup();
    }

private:
    QComboBox *m_box;
};

/// A position between two ends, which only a scroll bar lets the user move.
template <class Widget>
class AccessibleRange : public AccessibleControl, public QAccessibleValueInterface
{
public:
    AccessibleRange(Widget *range, QAccessible::Role role) : AccessibleControl(range, role), m_range(range) {}

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : AccessibleControl::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleControl::state();
        state.readOnly = !movable;
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind != QAccessible::Value)
            return AccessibleControl::text(kind);
        if constexpr (movable)
            return QString::number(m_range->value());
        else
            return m_range->text();
    }

    QVariant currentValue() const override { return m_range->value(); }
    void setCurrentValue(const QVariant &value) override
    {
        if constexpr (movable) {
            if (m_range->isEnabled())
                m_range->setValue(value.toInt());
        } else {
            Q_UNUSED(value);
        }
    }
    QVariant minimumValue() const override { return m_range->minimum(); }
    QVariant maximumValue() const override { return m_range->maximum(); }
    QVariant minimumStepSize() const override { return 1; }

private:
    static constexpr bool movable = std::is_same_v<Widget, QScrollBar>;

    Widget *m_range;
};

/// A progress bar from 0 to 100.
class AccessiblePie : public AccessibleControl, public QAccessibleValueInterface
{
public:
    explicit AccessiblePie(OrbProgressPie *pie) : AccessibleControl(pie, QAccessible::ProgressBar), m_pie(pie)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : AccessibleControl::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleControl::state();
        state.readOnly = true;
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? OrbProgressPie::tr("%1%").arg(m_pie->progress())
                                          : AccessibleControl::text(kind);
    }

    QVariant currentValue() const override { return m_pie->progress(); }
    void setCurrentValue(const QVariant &) override {}
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return 100; }
    QVariant minimumStepSize() const override { return 1; }

private:
    const OrbProgressPie *m_pie;
};

/// A picture, its notice and its tool tip.
class AccessiblePicture : public AccessibleControl
{
public:
    AccessiblePicture(QWidget *widget, std::function<QString()> value)
        : AccessibleControl(widget, QAccessible::Graphic), m_value(std::move(value))
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_value() : AccessibleControl::text(kind);
    }

private:
    std::function<QString()> m_value;
};

QAccessible::Role plainRole(const QWidget *widget)
{
    if (widget->isWindow())
        return QAccessible::Dialog;
    if (qobject_cast<const QLabel *>(widget))
        return QAccessible::StaticText;
    return widget->metaObject() == &QFrame::staticMetaObject ? QAccessible::Separator : QAccessible::Grouping;
}

QAccessibleInterface *createInterface(const QString &, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget || !(isUniqueName(widget->accessibleName()) || widget->property(windowMark).isValid()))
        return nullptr;
    if (auto *list = qobject_cast<QTreeView *>(widget))
        return new AccessibleList(list);
    if (auto *button = qobject_cast<QAbstractButton *>(widget))
        return new AccessibleButton(button);
    if (auto *edit = qobject_cast<QLineEdit *>(widget))
        return new AccessibleField(edit, edit, QAccessible::EditableText);
    if (auto *box = qobject_cast<QComboBox *>(widget))
        return new AccessibleChoice(box);
    if (auto *bar = qobject_cast<QScrollBar *>(widget))
        return new AccessibleRange<QScrollBar>(bar, QAccessible::ScrollBar);
    if (auto *bar = qobject_cast<QProgressBar *>(widget))
        return new AccessibleRange<QProgressBar>(bar, QAccessible::ProgressBar);
    if (auto *pie = qobject_cast<OrbProgressPie *>(widget))
        return new AccessiblePie(pie);
    if (auto *view = qobject_cast<LiveView *>(widget))
        return new AccessiblePicture(view, [view] { return view->valueText(); });
    if (auto *view = qobject_cast<PictureView *>(widget))
        return new AccessiblePicture(view, [view] { return view->valueText(); });
    auto *line = qobject_cast<QAbstractSpinBox *>(widget) ? widget->findChild<QLineEdit *>() : nullptr;
    if (line)
        return new AccessibleField(widget, line, QAccessible::SpinBox);
    return new AccessibleControl(widget, plainRole(widget));
}

/// Qt caches the interface at a widget's first accessibility event, and setting a caption is such an event.
void dropEarlyInterface(QWidget *widget)
{
    QAccessibleInterface *early = QAccessible::queryAccessibleInterface(widget);
    if (early && !dynamic_cast<AccessibleControl *>(early))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(early));
}

} // namespace

void describeToScreenReaders(QWidget *window)
{
    QAccessible::installFactory(createInterface);
    window->setProperty(windowMark, true);
    dropEarlyInterface(window);
}

void describeToScreenReaders(QWidget *widget, const QString &uniqueName)
{
    QAccessible::installFactory(createInterface);
    if (widget->parentWidget())
        forgetLabels(*widget->parentWidget()); // the page is growing
    widget->setAccessibleName(uniqueName);
    dropEarlyInterface(widget);
}

} // namespace paravue
