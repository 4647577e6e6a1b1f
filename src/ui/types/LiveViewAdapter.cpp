#include "controls/LiveView.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/types/DescribedSize.h"

#include <memory>

namespace paravue
{
namespace
{

/// A label of a fixed size for a live picture, which a time task gives it as its pixmap; the picture is
/// scaled to the label. Until then it says why it is empty. Reads and writes no address.
class LiveViewAdapter : public TypedAdapter<LiveView>
{
public:
    LiveViewAdapter() : TypedAdapter({.keys = {}}) {}

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *picture = new LiveView(parent);
        picture->setFixedSize(describedSize(control.element, QSize(320, 240)));
        return picture;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeLiveViewAdapter()
{
    return std::make_unique<LiveViewAdapter>();
}

} // namespace paravue
