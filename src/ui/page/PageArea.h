#pragma once

#include <QScrollArea>

namespace paravue
{

/// Holds a page and scrolls when there is no room for it. So no description can force a window that does not
/// fit the screen, or that the system cannot allocate.
class PageArea : public QScrollArea
{
public:
    enum Size {
        OfThePage,  ///< wants to be as large as its page, up to most of the screen
        OfTheWindow ///< takes what the window gives; the pages behind the shown one need not be measured
    };

    PageArea(QWidget *page, Size size);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QSize smallest() const;

    Size m_size;
};

} // namespace paravue
