#pragma once

#include "ui/tasks/PictureReceiver.h"

namespace paravue
{

/// The receivers of a window that has a recorder. They end with \a window at the latest.
ReceiverFactory pictureReceivers(QObject &window);

} // namespace paravue
