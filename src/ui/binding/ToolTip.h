#pragma once

namespace paravue
{

class ControlContext;
struct Control;

/// Shows the present tool tip of a control, the visible form of its "tooltip". Returns true when it has
/// changed.
bool loadToolTip(ControlContext &context, const Control &control);

} // namespace paravue
