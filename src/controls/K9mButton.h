#pragma once

#include <QPushButton>

namespace paravue
{

/// A button with a lamp beside its caption: a ring while it is off, a disc while it is on. It is drawn in the
/// colour of the caption, so it can be seen on every ground and by people who tell no colours apart.
///
/// A checkable one is switched by a click, the space bar or (in the setup window) Enter. One that is not has
/// the state that it was given, a device's for example, and its lamp is lit while it is held down as well.
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
