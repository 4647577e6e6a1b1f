#include "ui/WindowLook.h"

#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

#include <optional>

// Must stand outside of every namespace.
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

std::optional<QColor> namedButtonColor(const QString &word)
{
    if (word == QLatin1String("green")) {
        return QColor(Qt::green);
    }
    if (word == QLatin1String("blue")) {
        return QColor(Qt::blue);
    }
    if (word == QLatin1String("darkCyan")) {
        return QColor(Qt::darkCyan);
    }
    if (word == QLatin1String("red")) {
        return QColor(Qt::red);
    }
    return std::nullopt;
}

/// The colour in the middle of \a button as its style paints it in the present palette. Styles lighten the
/// button brush, or (a native one) ignore it, so the brush itself does not tell what a text must read on.
QColor paintedGround(const QPushButton &button, QStyle::State state)
{
    const QRect rect(0, 0, 48, 24);
    QImage image(rect.size(), QImage::Format_RGB32);
    image.fill(button.palette().color(QPalette::Window));
    QStyleOptionButton option;
    option.initFrom(&button);
    option.rect = rect;
    option.state = state | QStyle::State_Raised;
    option.palette.setCurrentColorGroup(state & QStyle::State_Enabled ? QPalette::Active
                                                                      : QPalette::Disabled);
    QPainter painter(&image);
    button.style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, &button);
    painter.end();
    return image.pixelColor(rect.center());
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

QColor headerText(const QPalette &palette)
{
    return readableVersion(ink(palette), headerBackground(palette));
}

QColor secondaryText(const QPalette &palette)
{
    return readableVersion(mixedColor(ink(palette), ground(palette), 0.35), ground(palette));
}

QColor accentColor(const QPalette &palette)
{
    return palette.color(QPalette::Highlight);
}

void colourButton(QPushButton &button, const QString &word)
{
    const std::optional<QColor> color = namedButtonColor(word);
    if (!color) {
        return;
    }
    QPalette palette = button.palette();
    palette.setBrush(QPalette::Button, *color);
    palette.setColor(QPalette::Disabled, QPalette::Button, mixedColor(ground(palette), *color, 0.3));
    button.setPalette(palette);

    palette.setColor(QPalette::ButtonText, readableTextOn(paintedGround(button, QStyle::State_Enabled)));
    const QColor disabledGround = paintedGround(button, QStyle::State_None);
    palette.setColor(
        QPalette::Disabled, QPalette::ButtonText,
        readableVersion(mixedColor(disabledGround, readableTextOn(disabledGround), 0.5), disabledGround));
    button.setPalette(palette);
}

void registerPictures()
{
    initPictures();
}

} // namespace paravue
