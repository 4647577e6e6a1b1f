#pragma once

#include <QScrollArea>

namespace paravue
{

/// Holds a page: as large as the page wants to be, but never larger than the screen has room for; beyond that
/// it scrolls. So no description can force a window that does not fit, or that the system cannot allocate.
class PageArea : public QScrollArea
{
public:
    explicit PageArea(QWidget *page);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

} // namespace paravue
