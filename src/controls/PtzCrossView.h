#pragma once

#include "controls/PtzView.h"

namespace paravue
{

/// A picture of all that a camera can turn to, with a cross hair where it looks: pan from edge to edge, tilt
/// from the lower edge to the upper one. While the position is not known the cross stands dashed in the
/// middle.
class PtzCrossView : public PtzView
{
    Q_OBJECT

public:
    explicit PtzCrossView(QWidget *parent = nullptr);

protected:
    void paintOver(QPainter &painter, const QRect &dirty) override;

private:
    void paintCross(QPainter &painter) const;
};

} // namespace paravue
