#pragma once

#include "ui/tasks/PictureSource.h"

namespace paravue
{

/// The sources of a window with a recorder. \a window becomes the parent of each of them.
PictureSourceFactory pictureSources(QObject &window);

} // namespace paravue
