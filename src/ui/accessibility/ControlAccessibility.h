#pragma once

#include <QString>

class QWidget;

namespace paravue
{

/// What assistive tools hear about the widgets of a description. The accessible name of such a widget is its
/// unique name, "link" and a number, which says nothing to a user. Through QAccessible the widget is called
/// by its own caption (of a window: its title), else by the label left of it or above it in its grid or one
/// whose buddy it is, else by its tool tip. Roles, states, values and actions are those of the toolkit; the
/// text of a password field is never given away. Names are worked out when somebody asks for one.

/// Makes the interface of the setup window one that knows this, before it has a unique name.
void describeToAssistiveTools(QWidget *window);
/// Gives \a widget its unique name, and an interface that knows this. Safe to call again.
void describeToAssistiveTools(QWidget *widget, const QString &uniqueName);

} // namespace paravue
