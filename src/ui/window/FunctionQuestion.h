#pragma once

#include "store/OrbSetup.h"

#include <QDomElement>
#include <QString>

class QWidget;

namespace paravue
{

/// What the attribute "danger" of \a action says, or without it the store.
OrbSetup::FunctionDanger dangerOf(const QDomElement &action, OrbSetup::FunctionDanger known);

/// Asks the user, in a message box above \a parent, whether the function \a name is to be called. It names
/// the \a recorder, and what is lost.
bool askForFunction(QWidget *parent, const QString &recorder, const QString &name,
                    OrbSetup::FunctionDanger danger);

} // namespace paravue
