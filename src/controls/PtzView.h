#pragma once

#include "controls/PictureView.h"
#include "controls/PtzPosition.h"

namespace paravue
{

/// A picture with a line below it that says where the camera looks.
class PtzView : public PictureView
{
    Q_OBJECT

public:
    explicit PtzView(QWidget *parent = nullptr);

    /// Nothing while it is not known.
    const std::optional<PtzPosition> &position() const { return m_position; }

    QString valueText() const override;

public Q_SLOTS:
    /// "pan,tilt" or "pan,tilt,zoom" as PtzPosition documents them. Any other text means that the position is
    /// not known.
    void slot_Set_PTZ_pos(const QString &position);
    void slot_Set_PTZ_pos(double pan, double tilt, double zoom);

protected:
    int footerHeight(int width) const override;
    void paintFooter(QPainter &painter) override;

private:
    void setPosition(const std::optional<PtzPosition> &position);
    QString positionText() const;

    std::optional<PtzPosition> m_position;
};

} // namespace paravue
