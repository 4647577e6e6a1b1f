#pragma once

#include <functional>

class QWidget;

namespace paravue
{

/// Calls \a setTexts now, and again whenever \a widget is told that the language of the application has
/// changed. For texts of our own that stay; texts of a description are set anew by the window.
void keepTranslated(QWidget &widget, const std::function<void()> &setTexts);

} // namespace paravue
