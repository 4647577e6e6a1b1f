#pragma once

#include <QScrollArea>

namespace paravue
{

/// Holds a page and scrolls when there is no room for it, so that a description cannot force a window larger
/// than the screen.
class PageArea : public QScrollArea
{
public:
    enum Size {
        OfThePage,  ///< wants to be as large as its page, up to most of the screen
        OfTheWindow ///< takes the size of the window; hidden pages need not be measured
    };

    PageArea(QWidget *page, Size size);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QSize smallest() const;

    Size m_size;
};

} // namespace paravue
