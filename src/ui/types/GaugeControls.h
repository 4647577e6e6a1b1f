#pragma once

#include "ui/binding/ControlType.h"

/// Controls that show how much of something there is.
namespace paravue
{

class ProgressBarControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal; }
    bool load(ControlContext &, const Control &) const override;
};

/// The pie shows used * 100 / size when its element has the children "size" and "used", and otherwise the
/// percentage at the address of its key.
class ProgressPieControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    bool load(ControlContext &, const Control &) const override;
};

/// "1.5G" and the like in bytes: a number with an optional fraction and an optional unit out of "TGMK"
/// (powers of 1024). Anything else is 0; what does not fit is the largest number.
qint64 parseSize(const QString &text);

} // namespace paravue
