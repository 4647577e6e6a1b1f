#pragma once

class QStyle;
class QWidget;

namespace paravue
{

/// The style of the controls in the windows of this library, for QWidget::setStyle(): that of the
/// application, with flat fields, buttons and check boxes whose edges are visible on every ground, a default
/// button in the colour of the selection, and one ring for the keyboard focus. The application's own style is
/// left alone. There is one object for all, which belongs to the application.
QStyle *controlStyle();

/// Marks \a widget as a value to read: while it is disabled it shows its text like a label, without the frame
/// of a field. Once it is enabled it looks like any other control.
void showAsValue(QWidget &widget);
/// True for such a widget while it is disabled.
bool isShownAsValue(const QWidget *widget);

/// Gives a line edit the thick outline of one whose text is wrong, or takes it away.
void showProblem(QWidget &field, bool hasProblem);

} // namespace paravue
