#include "controls/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <utility>

namespace paravue
{
namespace
{

using Paint = std::function<void(QPainter &, const QRectF &, QIcon::Mode)>;

class DrawnIconEngine : public QIconEngine
{
public:
    explicit DrawnIconEngine(Paint paint) : m_paint(std::move(paint)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        m_paint(*painter, rect, mode);
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
    Paint m_paint;
};

} // namespace

QIcon drawnIcon(Paint paint)
{
    return QIcon(new DrawnIconEngine(std::move(paint)));
}

} // namespace paravue
