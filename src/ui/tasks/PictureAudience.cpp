#include "ui/tasks/PictureAudience.h"

#include <algorithm>

namespace paravue
{
namespace
{

bool isSeen(const QWidget &control)
{
    // A host may use the controls of a window that it does not show.
    if (!control.window()->isVisible())
        return true;
    return control.isVisible() && !control.window()->isMinimized() && !control.visibleRegion().isEmpty();
}

} // namespace

bool PictureAudience::isWatching() const
{
    return std::any_of(controls.begin(), controls.end(),
                       [](const QPointer<QWidget> &control) { return control && isSeen(*control); });
}

} // namespace paravue
