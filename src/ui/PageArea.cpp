#include "ui/PageArea.h"

#include <QScreen>

namespace paravue
{

PageArea::PageArea(QWidget *page)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    // The page shows the ground of the tab or dialog that holds it.
    viewport()->setAutoFillBackground(false);
    setWidget(page);
    page->setAutoFillBackground(false);
    setFocusPolicy(Qt::NoFocus);
}

QSize PageArea::sizeHint() const
{
    return widget()->sizeHint().expandedTo(minimumSizeHint()).boundedTo(screen()->availableSize() * 4 / 5);
}

QSize PageArea::minimumSizeHint() const
{
    const QSize small(20 * fontMetrics().averageCharWidth(), 4 * fontMetrics().height());
    return widget()->minimumSizeHint().boundedTo(small);
}

} // namespace paravue
