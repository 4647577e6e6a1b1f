#include "ui/base/ColouredButton.h"

#include "controls/ControlPainting.h"
#include "controls/ReadableColors.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

#include <algorithm>
#include <array>

namespace paravue
{

namespace
{

struct ButtonColor {
    const char *word;
    QColor brush;
    QColor painted; ///< white text has a contrast of 7.1 and more on it
};

const std::array<ButtonColor, 4> &buttonColors()
{
    static const std::array<ButtonColor, 4> colors{{{"green", Qt::green, QColor(0x22, 0x64, 0x2f)},
                                                    {"blue", Qt::blue, QColor(0x26, 0x54, 0x9b)},
                                                    {"darkCyan", Qt::darkCyan, QColor(0x09, 0x60, 0x67)},
                                                    {"red", Qt::red, QColor(0x9c, 0x2f, 0x26)}}};
    return colors;
}

/// Null for others than the four.
const ButtonColor *colorOfBrush(const QColor &brush)
{
    const auto color = std::find_if(buttonColors().begin(), buttonColors().end(),
                                    [&](const ButtonColor &known) { return known.brush == brush; });
    return color == buttonColors().end() ? nullptr : &*color;
}

/// The disabled colours lie between that of the button and that of the window.
void setColors(QPushButton &button, const ButtonColor &color)
{
    QPalette palette = button.palette();
    const QColor faded = mixedColor(palette.color(QPalette::Window), color.painted, 0.3);
    palette.setBrush(QPalette::Button, color.brush);
    palette.setColor(QPalette::ButtonText, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::Button, faded);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText,
                     readableVersion(mixedColor(faded, readableTextOn(faded), 0.5), faded, ReadableContrast));
    button.setPalette(palette);
}

QStyleOptionButton optionOf(const QPushButton &button)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    option.icon = button.icon();
    option.iconSize = button.iconSize();
    const bool pressed = button.isDown() || button.isChecked();
    option.state |= pressed ? QStyle::State_Sunken : QStyle::State_Raised;
    return option;
}

void paintGround(QPainter &painter, const QStyleOptionButton &option)
{
    const QColor brush = option.palette.color(QPalette::Button);
    const ButtonColor *known = colorOfBrush(brush);
    const QColor color = known ? known->painted : brush;
    paintButtonGround(painter, option, color,
                      mixedColor(color, option.palette.color(QPalette::WindowText), 0.4));
}

/// Paints the button that it is the child of.
class ButtonPainter : public QObject
{
public:
    explicit ButtonPainter(QPushButton &button) : QObject(&button), m_button(button)
    {
        setObjectName(name());
        button.installEventFilter(this);
    }

    static QString name() { return QStringLiteral("paravueButtonPainter"); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        const ButtonColor *color = colorOfBrush(m_button.palette().color(QPalette::Active, QPalette::Button));
        if (event->type() == QEvent::PaletteChange && color)
            setColors(m_button, *color); // there may be another window colour
        if (event->type() != QEvent::Paint)
            return false;
        const QStyleOptionButton option = optionOf(m_button);
        QPainter painter(&m_button);
        paintGround(painter, option);
        m_button.style()->drawControl(QStyle::CE_PushButtonLabel, &option, &painter, &m_button);
        return true;
    }

private:
    QPushButton &m_button;
};

} // namespace

void colourButton(QPushButton &button, const QString &word)
{
    const auto color =
        std::find_if(buttonColors().begin(), buttonColors().end(),
                     [&](const ButtonColor &known) { return word == QLatin1StringView(known.word); });
    if (color == buttonColors().end())
        return;
    setColors(button, *color);
    button.setAttribute(Qt::WA_Hover);
    if (!button.findChild<QObject *>(ButtonPainter::name(), Qt::FindDirectChildrenOnly)) {
        new ButtonPainter(button);
    }
}

} // namespace paravue
