#include "ui/base/Alignment.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/page/GridCell.h"

#include <QFrame>

#include <memory>

namespace paravue
{
namespace
{

class SeparatorAdapter : public TypedAdapter<QFrame>
{
public:
    SeparatorAdapter() : TypedAdapter({.attributes = {orientationRule()}, .keys = {}}) {}

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *line = new QFrame(parent);
        line->setFrameShape(fills(control.element) == Qt::Horizontal ? QFrame::HLine : QFrame::VLine);
        // A sunken line is two pixels wide and lost on dark grounds.
        line->setFrameShadow(QFrame::Plain);
        line->setForegroundRole(QPalette::Mid);
        return line;
    }

    Qt::Orientations fills(const QDomElement &item) const override
    {
        return orientation(item.attribute(QStringLiteral("orientation")));
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeSeparatorAdapter()
{
    return std::make_unique<SeparatorAdapter>();
}

} // namespace paravue
