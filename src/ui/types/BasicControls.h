#pragma once

#include "ui/binding/ControlType.h"

class QPushButton;

/// Texts, fields, boxes, buttons and lines.
namespace paravue
{

class LabelControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    bool load(ControlContext &, const Control &) const override;
};

class EditControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    ChangeSignal changeSignal() const override;
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;
    bool isTyped(const Control &) const override;
    QString actionState(const Control &) const override;
    QStringList actionStates() const override { return {QStringLiteral("empty"), QStringLiteral("filled")}; }
};

class CheckBoxControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    ChangeSignal changeSignal() const override;
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;
    QString actionState(const Control &) const override;
    QStringList actionStates() const override { return {QStringLiteral("on"), QStringLiteral("off")}; }
    bool runsCalls() const override { return true; }
};

class PushButtonControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    ChangeSignal changeSignal() const override;
    bool load(ControlContext &, const Control &) const override;
    bool runsCalls() const override { return true; }

protected:
    /// Gives a new \a button what every button takes from its description.
    static void prepare(QPushButton &button, ControlContext &context, const Control &control);
};

class SeparatorControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    Qt::Orientations fills(const QDomElement &) const override;
};

} // namespace paravue
