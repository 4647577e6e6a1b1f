#pragma once

#include "ui/types/BasicControls.h"

/// Controls for what is particular to a recorder: its disks, its switches, its picture.
namespace paravue
{

/// A bar of a fixed size that shows how healthy the disk is whose S.M.A.R.T. report stands at the address of
/// the first "key" (see cDiskFitness): green from 30 on, red below. The figure itself is in the tool tip,
/// unless the description has one of its own, and in the value that assistive tools hear. Writes nothing.
class DiskFitnessControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    bool load(ControlContext &, const Control &) const override;
};

/// A button with a lamp. With a "key" the lamp is on when the value there is "on"; without one the state of a
/// checkable button is the user's. It writes nothing: its actions do, for which it has the states "on" and
/// "off" when it is checkable or has a key.
class K9mButtonControl : public PushButtonControl
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    bool load(ControlContext &, const Control &) const override;
    QString actionState(const Control &) const override;
    QStringList actionStates() const override { return {QStringLiteral("on"), QStringLiteral("off")}; }
};

/// A label of a fixed size for a live picture, which whoever receives one gives it as its pixmap; the picture
/// is scaled to the label. Until then it says why it is empty. Reads and writes no address.
class OnlineControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
};

} // namespace paravue
