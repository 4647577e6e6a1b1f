#include "ui/window/WindowHeader.h"

#include "controls/DrawnIcon.h"
#include "controls/OwnTexts.h"
#include "ui/base/ElidedLabel.h"
#include "ui/base/WindowStyle.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QPainter>
#include <QToolButton>

namespace paravue
{

namespace
{

constexpr int PictureSize = 24;
constexpr QColor PictureColor(0x64, 0x80, 0x9f);
constexpr int CloseButtonSize = 28;

/// Renders the icon at every paint, so that it is sharp on every screen.
class HeaderPicture : public QWidget
{
public:
    explicit HeaderPicture(QWidget *parent)
        : QWidget(parent), m_icon(QStringLiteral(":/icons/resources/settings.png"))
    {
        setFixedSize(PictureSize, PictureSize);
        // Mouse presses pass to the strip, which drags the window.
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const QColor color = readableVersion(PictureColor, headerBackground(palette()), VisibleContrast);
        painter.drawPixmap(rect(), iconInColor(m_icon, size(), painter, color));
    }

private:
    QIcon m_icon;
};

/// A cross in the colour of the header text; the platform's own close picture is dark on dark desktops.
class CloseButton : public QToolButton
{
public:
    explicit CloseButton(QWidget *parent) : QToolButton(parent)
    {
        setAutoRaise(true);
        setFixedSize(CloseButtonSize, CloseButtonSize);
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QToolButton::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(foregroundRole()), 1.6, Qt::SolidLine, Qt::RoundCap));
        QRectF cross(0, 0, 9, 9);
        cross.moveCenter(QRectF(rect()).center());
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.topRight(), cross.bottomLeft());
    }
};

} // namespace

WindowHeader::WindowHeader(QWidget *parent)
    : QWidget(parent), m_label(new ElidedLabel(this)), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(PageMargin, SpacingStep, SpacingStep, SpacingStep);
    m_layout->setSpacing(GridSpacing);
    m_layout->addWidget(m_label, 1);
    applyFont();
}

void WindowHeader::complete()
{
    registerPictures();
    m_layout->insertWidget(0, new HeaderPicture(this));
    m_closeButton = new CloseButton(this);
    keepTranslated(*m_closeButton, [this] {
        m_closeButton->setAccessibleName(tr("Close"));
        m_closeButton->setToolTip(tr("Close"));
    });
    connect(m_closeButton, &QToolButton::clicked, this, &WindowHeader::closeRequested);
    m_layout->addWidget(m_closeButton);
}

void WindowHeader::addTool(QWidget *tool)
{
    m_layout->insertWidget(m_layout->indexOf(m_closeButton), tool);
}

void WindowHeader::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), headerBackground(palette()));
    painter.fillRect(0, height() - 1, width(), 1, borderColor(palette()));
}

void WindowHeader::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        applyFont();
    }
    QWidget::changeEvent(event);
}

void WindowHeader::applyFont()
{
    m_label->setFont(headerFont(font()));
}

} // namespace paravue
