#pragma once

#include <QTabWidget>

namespace paravue
{

class PageTabBar;

/// Tabs of which a caption that is too long is elided on the screen and shown whole as its tool tip;
/// tabText() is always the whole of it. Tabs that have no room beside each other are scrolled.
class PageTabs : public QTabWidget
{
public:
    explicit PageTabs(QWidget *parent);

    /// While many tabs come, change or go, their captions are measured at the end: by itself a bar measures
    /// all of them for each one.
    class Changes
    {
    public:
        explicit Changes(PageTabs &tabs);
        ~Changes();
        Q_DISABLE_COPY_MOVE(Changes)

    private:
        PageTabs &m_tabs;
    };

private:
    PageTabBar *m_bar;
};

} // namespace paravue
