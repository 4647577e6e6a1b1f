#include "controls/LiveView.h"

#include "controls/MessageText.h"

#include <QAccessible>
#include <QPainter>

namespace paravue
{

namespace
{

constexpr int FocusFrameWidth = 3; // pixels

} // namespace

LiveView::LiveView(QWidget *parent) : QLabel(tr("No signal"), parent)
{
    setTextFormat(Qt::PlainText);
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setScaledContents(true);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setAutoFillBackground(true);
}

void LiveView::setNotice(const QString &text)
{
    if (text == m_notice)
        return;
    m_notice = text;
    update();
    QAccessibleValueChangeEvent event(this, valueText());
    QAccessible::updateAccessibility(&event);
}

QString LiveView::valueText() const
{
    return m_notice.isEmpty() ? text() : m_notice;
}

void LiveView::setPixmap(const QPixmap &pixmap)
{
    QLabel::setPixmap(pixmap);
    setNotice({});
}

void LiveView::paintEvent(QPaintEvent *event)
{
    const bool hasPicture = !pixmap(Qt::ReturnByValue).isNull();
    if (hasPicture)
        QLabel::paintEvent(event);
    const QString shown = shortenedMessage(valueText());
    if (hasPicture && shown.isEmpty())
        return;
    const QColor background = palette().color(backgroundRole());
    QPainter painter(this);
    if (hasPicture)
        dimPicture(painter, contentsRect(), background);
    else
        drawFrame(&painter);
    paintNotice(painter, contentsRect(), shown, background, palette().color(foregroundRole()));
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), FocusFrameWidth));
        painter.drawRect(rect().adjusted(1, 1, -2, -2));
    }
}

} // namespace paravue
