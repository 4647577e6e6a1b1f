#pragma once

#include <QVBoxLayout>

namespace paravue
{

/// The grids of a page, one below the other. In a large window they keep a width across which a row can be
/// read, unless they ask for more, and stand where lines begin.
class PageLayout : public QVBoxLayout
{
public:
    using QVBoxLayout::QVBoxLayout;

    void setGeometry(const QRect &rect) override;
    int heightForWidth(int width) const override;
    int minimumHeightForWidth(int width) const override;

private:
    int usedWidth(int width) const;
};

} // namespace paravue
