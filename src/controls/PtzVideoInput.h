#pragma once

#include "controls/PictureView.h"
#include "controls/PtzSteering.h"

namespace paravue
{

/// The live picture of a camera with pan, tilt and zoom, in which it can be steered.
class PtzVideoInput : public PictureView, public SteeredView
{
    Q_OBJECT

public:
    explicit PtzVideoInput(QWidget *parent = nullptr);

    PtzSteering &steering() override { return m_steering; }

    QString valueText() const override;

Q_SIGNALS:
    /// A picture has come and is shown.
    void signal_Pixmap_ready();

protected:
    void paintOver(QPainter &painter, const QRect &dirty) override;

private:
    PtzSteering m_steering;
};

} // namespace paravue
