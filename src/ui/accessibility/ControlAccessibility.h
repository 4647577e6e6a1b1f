#pragma once

#include <QString>

class QWidget;

namespace paravue
{

/// What screen readers hear about the widgets of a description. The accessible name of such a widget is its
/// unique name, "link" and a number, which means nothing to a user. Through QAccessible the widget is called
/// by its own caption (of a window: its title), else by the label left of it or above it in its grid or one
/// whose buddy it is, else by its tool tip. Roles, states, values and actions are those of Qt; the text of a
/// password field is never given. Names are computed when they are asked for.

/// Installs such an interface for the setup window, before it has a unique name.
void describeToScreenReaders(QWidget *window);
/// Gives \a widget its unique name and such an interface. Safe to call again.
void describeToScreenReaders(QWidget *widget, const QString &uniqueName);

} // namespace paravue
