#include "controls/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <utility>

namespace paravue
{
namespace
{

class DrawnIconEngine : public QIconEngine
{
public:
    explicit DrawnIconEngine(IconPainter paint) : m_paint(std::move(paint)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        m_paint(*painter, rect, mode, state);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new DrawnIconEngine(m_paint); }

private:
    IconPainter m_paint;
};

} // namespace

QIcon drawnIcon(IconPainter paint)
{
    return QIcon(new DrawnIconEngine(std::move(paint)));
}

QPixmap iconInColor(const QIcon &icon, const QSize &size, const QPainter &painter, const QColor &color)
{
    QPixmap picture = icon.pixmap(size, painter.device()->devicePixelRatioF());
    QPainter tint(&picture);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(picture.rect(), color);
    return picture;
}

} // namespace paravue
