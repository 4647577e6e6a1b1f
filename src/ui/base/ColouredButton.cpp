#include "ui/base/ColouredButton.h"

#include "controls/ReadableColors.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>

#include <optional>

namespace paravue
{

namespace
{

constexpr double CornerRadius = 3;

std::optional<QColor> namedColor(const QString &word)
{
    static const QHash<QString, QColor> colors{{QStringLiteral("green"), Qt::green},
                                               {QStringLiteral("blue"), Qt::blue},
                                               {QStringLiteral("darkCyan"), Qt::darkCyan},
                                               {QStringLiteral("red"), Qt::red}};
    const auto found = colors.constFind(word);
    return found == colors.cend() ? std::nullopt : std::optional(*found);
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
    const QColor color = option.palette.color(QPalette::Button);
    const QColor text = option.palette.color(QPalette::ButtonText);
    // Pressed and hovered buttons get a colour with more contrast to the text, never less.
    const QColor awayFromText = readableTextOn(text);
    double shift = 0;
    if (option.state & QStyle::State_Sunken) {
        shift = 0.3;
    } else if ((option.state & QStyle::State_MouseOver) && (option.state & QStyle::State_Enabled)) {
        shift = 0.12;
    }

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF rect = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(mixedColor(color, option.palette.color(QPalette::WindowText), 0.4));
    painter.setBrush(mixedColor(color, awayFromText, shift));
    painter.drawRoundedRect(rect, CornerRadius, CornerRadius);
    if (option.state & QStyle::State_HasFocus) {
        painter.setPen(text);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect.adjusted(2, 2, -2, -2), CornerRadius - 1, CornerRadius - 1);
    }
    painter.restore();
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
        if (event->type() != QEvent::Paint) {
            return false;
        }
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
    const std::optional<QColor> color = namedColor(word);
    if (!color) {
        return;
    }
    QPalette palette = button.palette();
    const QColor faded = mixedColor(palette.color(QPalette::Window), *color, 0.3);
    palette.setBrush(QPalette::Button, *color);
    palette.setColor(QPalette::ButtonText, readableTextOn(*color));
    palette.setColor(QPalette::Disabled, QPalette::Button, faded);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText,
                     readableVersion(mixedColor(faded, readableTextOn(faded), 0.5), faded));
    button.setPalette(palette);
    button.setAttribute(Qt::WA_Hover);
    if (!button.findChild<QObject *>(ButtonPainter::name(), Qt::FindDirectChildrenOnly)) {
        new ButtonPainter(button);
    }
}

} // namespace paravue
