#include "controls/PictureView.h"

#include "controls/MessageText.h"
#include "controls/ReadableColors.h"

#include <QAccessible>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

namespace paravue
{
namespace
{

// Narrow, so that the picture lines up with the controls above it.
constexpr int FrameWidth = 1;
constexpr int FooterGap = 3;
constexpr QSize UsualSize(320, 240);
constexpr QSize SmallestSize(96, 72);

} // namespace

PictureView::PictureView(QWidget *parent) : QWidget(parent), m_preferred(UsualSize) {}

void PictureView::setPreferredSize(const QSize &size)
{
    m_requested = size;
    m_preferred = QSize(size.width() > 0 ? size.width() : UsualSize.width(),
                        size.height() > 0 ? size.height() : UsualSize.height());
    updateGeometry();
    update();
}

void PictureView::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

QString PictureView::valueText() const
{
    if (m_pixmap.isNull())
        return placeholder();
    return withNotice(
        tr("%1 × %2 pixels").arg(QString::number(m_pixmap.width()), QString::number(m_pixmap.height())));
}

QString PictureView::shownRemark() const
{
    return m_notice.isEmpty() && hasPicture() ? m_remark : QString();
}

QString PictureView::withNotice(const QString &text) const
{
    const QString first = m_notice.isEmpty() ? PictureView::shownRemark() : m_notice;
    return first.isEmpty() ? text : tr("%1; %2").arg(first, text);
}

QString PictureView::placeholder() const
{
    if (!m_notice.isEmpty() || !m_pixmap.isNull())
        return m_notice;
    return m_reason.isEmpty() ? tr("No picture from the camera yet") : m_reason;
}

QSize PictureView::sizeHint() const
{
    return viewSize(m_preferred);
}

QSize PictureView::minimumSizeHint() const
{
    const QSize smallest = SmallestSize.boundedTo(m_preferred);
    return viewSize({m_requested.width() > 0 ? m_requested.width() : smallest.width(),
                     m_requested.height() > 0 ? m_requested.height() : smallest.height()});
}

QSize PictureView::viewSize(const QSize &picture) const
{
    return picture + QSize(2 * FrameWidth, 2 * FrameWidth + footerRoom(picture.width()));
}

int PictureView::footerRoom(int width) const
{
    const int height = footerHeight(width);
    return height > 0 ? FooterGap + height : 0;
}

void PictureView::setPixmap(const QPixmap &pixmap)
{
    const bool sameSize = pixmap.size() == m_pixmap.size() && m_notice.isEmpty();
    m_pixmap = pixmap;
    m_notice.clear();
    if (isVisible()) // at once, while the picture is in the caches of the processor
        scaledPicture();
    // A live picture comes many times a second: screen readers are told only of another size or the end of a
    // notice.
    sameSize ? update() : stateChanged();
    Q_EMIT pictureChanged();
}

void PictureView::setNotice(const QString &text)
{
    const QString notice = shortenedMessage(text);
    if (notice == m_notice)
        return;
    m_notice = notice;
    stateChanged();
}

void PictureView::setCaption(const QString &text)
{
    m_caption = shortenedMessage(text);
    setAccessibleDescription(m_caption);
    update();
}

void PictureView::setRemark(const QString &text)
{
    const QString remark = shortenedMessage(text);
    if (remark == m_remark)
        return;
    m_remark = remark;
    stateChanged();
}

void PictureView::setText(const QString &reason)
{
    m_reason = shortenedMessage(reason);
    stateChanged();
}

QRect PictureView::pictureArea() const
{
    const QRect inside = rect().adjusted(FrameWidth, FrameWidth, -FrameWidth, -FrameWidth);
    return inside.adjusted(0, 0, 0, -footerRoom(inside.width()));
}

QRect PictureView::pictureRect() const
{
    const QRect area = pictureArea();
    if (area.isEmpty())
        return {};
    const QSize shape = m_pixmap.isNull() ? m_preferred : m_pixmap.size();
    const QSize size = shape.scaled(area.size(), Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    return QStyle::alignedRect(layoutDirection(), m_alignment, size, area);
}

QRect PictureView::footerRect() const
{
    const QRect area = pictureArea();
    return {area.left(), pictureRect().bottom() + 1 + FrameWidth + FooterGap, area.width(),
            footerHeight(area.width())};
}

QPointF PictureView::fractionAt(const QPointF &position) const
{
    const QRectF picture = pictureRect();
    if (picture.isEmpty())
        return {};
    return {(position.x() - picture.left()) / picture.width(),
            (position.y() - picture.top()) / picture.height()};
}

QPointF PictureView::positionOf(const QPointF &fraction) const
{
    const QRectF picture = pictureRect();
    return picture.topLeft() + QPointF(fraction.x() * picture.width(), fraction.y() * picture.height());
}

void PictureView::paintOver(QPainter &painter, const QRect &)
{
    paintPlaceholder(painter);
}

int PictureView::footerHeight(int) const
{
    return 0;
}

void PictureView::paintFooter(QPainter &) {}

void PictureView::paintPlaceholder(QPainter &painter, float coverage)
{
    paintNotice(painter, pictureRect(), placeholder(), palette().color(QPalette::Window),
                palette().color(QPalette::WindowText), coverage);
}

void PictureView::stateChanged()
{
    update();
    QAccessibleValueChangeEvent event(this, valueText());
    QAccessible::updateAccessibility(&event);
}

const QPixmap &PictureView::scaledPicture()
{
    return m_scaled.of(m_pixmap, pictureRect().size(), devicePixelRatioF());
}

void PictureView::paintEvent(QPaintEvent *event)
{
    const QRect picture = pictureRect();
    if (picture.isEmpty())
        return;
    QPainter painter(this);
    const QColor background = palette().color(QPalette::Window);
    const QColor foreground = palette().color(QPalette::WindowText);
    if (m_pixmap.isNull()) {
        painter.fillRect(picture, mixedColor(background, foreground, 0.1));
    } else {
        painter.drawPixmap(picture.topLeft(), scaledPicture());
    }
    if (!isEnabled() || (!m_notice.isEmpty() && !m_pixmap.isNull()))
        dimPicture(painter, picture, background);
    painter.save();
    painter.setOpacity(isEnabled() ? 1 : 0.6);
    painter.setClipRect(picture);
    paintOver(painter, event->rect());
    paintRemark(painter, picture, shownRemark(), background, foreground);
    if (hasPicture() && m_notice.isEmpty())
        paintCaption(painter, picture, m_caption, background, foreground);
    painter.restore();
    paintFooter(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(mixedColor(background, foreground, 0.4), FrameWidth));
    const double out = FrameWidth / 2.0;
    painter.drawRect(QRectF(picture).adjusted(-out, -out, out, out));
}

void drawOnPicture(QPainter &painter, const QList<QLineF> &lines, double width, Qt::PenStyle style)
{
    painter.setPen(QPen(Qt::black, width + 2, Qt::SolidLine, Qt::SquareCap));
    painter.drawLines(lines);
    painter.setPen(QPen(Qt::white, width, style, Qt::SquareCap));
    painter.drawLines(lines);
}

} // namespace paravue
