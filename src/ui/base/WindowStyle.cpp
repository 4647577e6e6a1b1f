#include "ui/base/WindowStyle.h"

#include "controls/SharedPictures.h"

// Q_INIT_RESOURCE must be used outside of every namespace.
static void initPictures()
{
    Q_INIT_RESOURCE(window);
}

namespace paravue
{

namespace
{

QColor ground(const QPalette &palette)
{
    return palette.color(QPalette::Window);
}

QColor ink(const QPalette &palette)
{
    return palette.color(QPalette::WindowText);
}

} // namespace

QFont headerFont(const QFont &base)
{
    QFont font = base;
    if (base.pixelSize() > 0) {
        font.setPixelSize(qRound(base.pixelSize() * 1.2));
    } else {
        font.setPointSizeF(base.pointSizeF() * 1.2);
    }
    font.setWeight(QFont::DemiBold);
    return font;
}

QColor borderColor(const QPalette &palette)
{
    return mixedColor(ground(palette), ink(palette), 0.3);
}

QColor headerBackground(const QPalette &palette)
{
    return mixedColor(ground(palette), ink(palette), 0.08);
}

void registerPictures()
{
    initPictures();
    registerSharedPictures();
}

} // namespace paravue
