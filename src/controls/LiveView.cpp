#include "controls/LiveView.h"

#include "controls/MessageText.h"

#include <QAccessible>
#include <QPainter>

namespace paravue
{

LiveView::LiveView(QWidget *parent) : QLabel(tr("No signal"), parent)
{
    setTextFormat(Qt::PlainText);
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setScaledContents(true);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setAttribute(Qt::WA_OpaquePaintEvent); // what the picture covers is not filled before
}

void LiveView::setNotice(const QString &text)
{
    if (text == m_notice)
        return;
    m_notice = text;
    stateChanged();
}

void LiveView::setCaption(const QString &text)
{
    m_caption = shortenedMessage(text);
    setAccessibleDescription(m_caption);
    update();
}

void LiveView::setRemark(const QString &text)
{
    if (text == m_remark)
        return;
    m_remark = text;
    stateChanged();
}

void LiveView::stateChanged()
{
    update();
    QAccessibleValueChangeEvent event(this, valueText());
    QAccessible::updateAccessibility(&event);
}

QString LiveView::valueText() const
{
    if (!m_notice.isEmpty())
        return m_notice;
    return hasPicture() ? m_remark : text();
}

void LiveView::setPixmap(const QPixmap &pixmap)
{
    QLabel::setPixmap(pixmap);
    m_isWhole = true;
    if (isVisible()) // at once, while the picture is in the caches of the processor
        scaledPicture();
    setNotice({});
}

QSize LiveView::scaledSize() const
{
    if (!isVisible() || !hasPicture() || !m_notice.isEmpty())
        return {};
    return (QSizeF(contentsRect().size()) * devicePixelRatioF()).toSize();
}

void LiveView::setScaledPicture(const QPixmap &picture)
{
    m_scaled.set(QLabel::pixmap(), picture);
    m_isWhole = false;
    update(contentsRect());
}

void LiveView::setWholePicture(const QPixmap &pixmap)
{
    m_scaled.setPicture(pixmap);
    QLabel::setPixmap(pixmap);
    m_isWhole = true;
}

QPixmap LiveView::pixmap() const
{
    if (!m_isWhole)
        Q_EMIT wholePictureNeeded();
    return QLabel::pixmap();
}

void LiveView::paintEvent(QPaintEvent *)
{
    const QString shown = shortenedMessage(valueText());
    const QColor background = palette().color(backgroundRole());
    const QColor foreground = palette().color(foregroundRole());
    QPainter painter(this);
    const QRegion border = QRegion(rect()) - contentsRect();
    for (const QRect &part : hasPicture() ? border : QRegion(rect()))
        painter.fillRect(part, background);
    drawFrame(&painter);
    if (hasPicture())
        paintPicture(painter);
    if (hasPicture() && m_notice.isEmpty()) {
        paintRemark(painter, contentsRect(), shown, background, foreground);
        paintCaption(painter, contentsRect(), m_caption, background, foreground);
    } else {
        paintNotice(painter, contentsRect(), shown, background, foreground);
    }
}

const QPixmap &LiveView::scaledPicture()
{
    return m_scaled.of(QLabel::pixmap(), contentsRect().size(), devicePixelRatioF());
}

void LiveView::paintPicture(QPainter &painter)
{
    const QRect area = contentsRect();
    painter.drawPixmap(area.topLeft(), scaledPicture());
    if (!m_notice.isEmpty() || !isEnabled())
        dimPicture(painter, area, palette().color(backgroundRole()));
}

} // namespace paravue
