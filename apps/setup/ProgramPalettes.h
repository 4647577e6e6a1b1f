#pragma once

#include <QPalette>

namespace paravue
{

/// The program's own colours, where the desktop's palette has others than its user wants. Every text has a
/// contrast of at least 4.5 on its ground.
QPalette lightPalette();
QPalette darkPalette();

} // namespace paravue
