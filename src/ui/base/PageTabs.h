#pragma once

#include <QTabWidget>

namespace paravue
{

/// Tabs of which a caption that is too long is elided on the screen and shown whole as its tool tip;
/// tabText() is always the whole of it. Tabs that have no room beside each other are scrolled.
class PageTabs : public QTabWidget
{
public:
    explicit PageTabs(QWidget *parent);
};

} // namespace paravue
