#pragma once

#include "ui/binding/ControlType.h"

/// Controls that pick a value out of a range or a list.
namespace paravue
{

class DropDownControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    ChangeSignal changeSignal() const override;
    KeyForm keyForm() const override { return KeyForm::Assignment; }
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;
    bool runsCalls() const override { return true; }
};

class ScrollControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    ChangeSignal changeSignal() const override;
    Qt::Orientations fills(const QDomElement &) const override;
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;
    bool runsCalls() const override { return true; }
};

class DateTimeControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    ChangeSignal changeSignal() const override;
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;
};

} // namespace paravue
