#pragma once

#include "controls/PictureView.h"

namespace paravue
{

/// The live picture of a camera with pan, tilt and zoom.
class PtzVideoInput : public PictureView
{
    Q_OBJECT

public:
    explicit PtzVideoInput(QWidget *parent = nullptr);

Q_SIGNALS:
    /// A picture has come and is shown.
    void signal_Pixmap_ready();
};

} // namespace paravue
