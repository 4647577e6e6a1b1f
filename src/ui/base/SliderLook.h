#pragma once

class QScrollBar;

namespace paravue
{

/// Lets \a bar look like a slider: a groove, a round handle and no arrows. A scroll bar that sets a value
/// moves no page, and its arrows were taken for buttons. It stays a QScrollBar with all its keys and signals.
void showAsSlider(QScrollBar &bar);

} // namespace paravue
