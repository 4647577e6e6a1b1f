#pragma once

#include "ui/binding/ControlType.h"

/// Controls for cameras with pan, tilt and zoom. Their pictures come from time tasks, and the position of the
/// camera from calls of slot_Set_PTZ_pos.
namespace paravue
{

/// The live picture. With a "key" the size of the picture is kept there as "704x576", whenever a picture of
/// another size has come.
class PtzVideoInputControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    bool sizesItself() const override { return true; }
    ChangeSignal changeSignal() const override;
    QStringList assignments(ControlContext &, const Control &) const override;
};

/// Calibration points. Attribute "points" is how many there are (4 when absent). They stand at addresses made
/// of the first "key" and the number of the point, counted from 1: with the key "ptz/cam0/POINT" at
/// "ptz/cam0/POINT1" and so on; controls/CalibrationPoint.h documents the texts. A second "key" is the
/// address of the number of the point that was gone to last.
class PtzCalibratorControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    bool sizesItself() const override { return true; }
    ChangeSignal changeSignal() const override;
    ChangeSignal secondChangeSignal() const override;
    KeyForm keyForm() const override { return KeyForm::Rows; }
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;
};

/// A cross hair where the camera looks. Has no value.
class PtzCrossViewControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    bool sizesItself() const override { return true; }
};

} // namespace paravue
