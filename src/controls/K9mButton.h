#pragma once

#include <QPushButton>

namespace paravue
{

/// A button with a lamp beside its caption: a ring while it is off, a disc while it is on. It has the colour
/// of the caption, so it is visible on every background and without colour vision.
///
/// A checkable one is switched by a click, the space bar or (in the setup window) Enter. Any other shows the
/// state that was set, for example that of a device, and is also lit while it is held down.
class K9mButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(bool on READ isOn WRITE setOn)

public:
    explicit K9mButton(QWidget *parent = nullptr);

    bool isOn() const;
    /// Emits toggled() when a checkable button changes, but never clicked().
    void setOn(bool on);

public Q_SLOTS:
    /// "on" switches the lamp on, every other text off.
    void setState(const QString &state);

protected:
    void changeEvent(QEvent *event) override;

private:
    void showLamp();

    bool m_on = false; ///< of a button that is not checkable
};

} // namespace paravue
