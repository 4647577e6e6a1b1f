#pragma once

#include "ui/binding/FileAccessGuard.h"

class QWidget;

namespace paravue
{

/// Asks the user, in a message box above \a parent, whether the recorder may use the file at \a path.
bool askForFileAccess(QWidget *parent, const QString &path, FileUse use);

} // namespace paravue
