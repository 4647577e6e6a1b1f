#pragma once

#include "ui/binding/ControlType.h"

/// The lists of things that the user can pick one of. controls/AccessList.h and controls/SoftList.h describe
/// the keys below the address in their "key". What the user does with the picked row is a state of the list:
/// "selected", "unselected", "activated" (Enter, double click), "delete" (the Delete key).
namespace paravue
{

/// A list of the users. Its "accesslevel" children are captions: of the level in their attribute "level", or
/// of the level that is their place, counted from 0.
class AccessListControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    KeyForm keyForm() const override { return KeyForm::Group; }
    ChangeSignal changeSignal() const override;
    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }
    bool load(ControlContext &, const Control &) const override;
    /// The whole list. The keys of users that are no longer there are emptied: nothing of them stays.
    QStringList assignments(ControlContext &, const Control &) const override;
    QString actionState(const Control &) const override;
    QStringList actionStates() const override;
};

/// A list of the software packages.
class SoftListControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    KeyForm keyForm() const override { return KeyForm::Group; }
    ChangeSignal changeSignal() const override;
    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }
    bool load(ControlContext &, const Control &) const override;
    QString actionState(const Control &) const override;
    QStringList actionStates() const override;
};

/// How many of \a stored rows a list shows. Tells the user when that is less than there are.
int shownRows(ControlContext &context, int stored);

} // namespace paravue
