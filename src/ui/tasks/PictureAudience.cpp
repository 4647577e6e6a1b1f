#include "ui/tasks/PictureAudience.h"

#include "controls/LiveView.h"

#include <algorithm>
#include <optional>

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

QSize PictureAudience::scaledSize() const
{
    std::optional<QSize> size;
    for (const QPointer<QWidget> &control : controls) {
        if (!control)
            continue;
        const auto *view = qobject_cast<const LiveView *>(control);
        if (!view || (size && *size != view->scaledSize()))
            return {};
        size = view->scaledSize();
    }
    return size.value_or(QSize());
}

} // namespace paravue
