#include "ui/page/PageLayout.h"

#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int ReadableWidth = 1200; // device-independent pixels

} // namespace

int PageLayout::usedWidth(int width) const
{
    return width > ReadableWidth ? std::min(width, std::max(ReadableWidth, sizeHint().width())) : width;
}

void PageLayout::setGeometry(const QRect &rect)
{
    const QRect used(rect.topLeft(), QSize(usedWidth(rect.width()), rect.height()));
    const Qt::LayoutDirection direction =
        parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    QVBoxLayout::setGeometry(QStyle::visualRect(direction, rect, used));
}

int PageLayout::heightForWidth(int width) const
{
    return QVBoxLayout::heightForWidth(usedWidth(width));
}

int PageLayout::minimumHeightForWidth(int width) const
{
    return QVBoxLayout::minimumHeightForWidth(usedWidth(width));
}

} // namespace paravue
