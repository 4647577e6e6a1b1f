#include "controls/PtzVideoInput.h"

namespace paravue
{

PtzVideoInput::PtzVideoInput(QWidget *parent) : PictureView(parent)
{
    connect(this, &PictureView::pictureChanged, this, [this] {
        if (!pixmap().isNull())
            Q_EMIT signal_Pixmap_ready();
    });
}

} // namespace paravue
