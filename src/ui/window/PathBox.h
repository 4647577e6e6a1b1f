#pragma once

#include "ui/binding/LocalPaths.h"

class QWidget;

namespace paravue
{

/// Asks the user, in a message box above \a parent, whether the recorder may use the file at \a path.
bool askAboutPath(QWidget *parent, const QString &path, PathUse use);

} // namespace paravue
