#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

namespace paravue
{

/// The controls that show the pictures of one task.
struct PictureAudience {
    QList<QPointer<QWidget>> controls;

    /// Whether a user can see one of them: not while it is on another page, in a minimised window or covered.
    bool isWatching() const;
    /// The size in pixels in which their pictures are painted, if none of them needs more (LiveView.h). Else
    /// an empty size.
    QSize scaledSize() const;
};

} // namespace paravue
