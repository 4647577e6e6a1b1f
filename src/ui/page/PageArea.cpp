#include "ui/page/PageArea.h"

#include <QScreen>

namespace paravue
{

PageArea::PageArea(QWidget *page, Size size) : m_size(size)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    // A dialog is as large as its page; an expanding area would be larger.
    if (size == OfThePage)
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setWidget(page);
    // Transparent: the background is that of the tab or dialog.
    viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false);
}

QSize PageArea::sizeHint() const
{
    if (m_size == OfTheWindow)
        return smallest();
    return widget()->sizeHint().expandedTo(minimumSizeHint()).boundedTo(screen()->availableSize() * 4 / 5);
}

QSize PageArea::minimumSizeHint() const
{
    return m_size == OfTheWindow ? smallest() : widget()->minimumSizeHint().boundedTo(smallest());
}

QSize PageArea::smallest() const
{
    return {20 * fontMetrics().averageCharWidth(), 4 * fontMetrics().height()};
}

} // namespace paravue
