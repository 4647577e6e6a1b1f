#pragma once

#include <QList>
#include <QRect>
#include <QStringList>

#include <functional>

class QPainter;
class QWidget;

namespace paravue
{

/// A row of small labelled swatches, one of which may be the chosen one: a legend, and a choice of it. It
/// wraps into further lines where it has to. No widget of its own: its owner gives it room, font, palette and
/// layout direction.
class ChipStrip
{
public:
    explicit ChipStrip(const QWidget &owner) : m_owner(owner) {}

    void setTexts(const QStringList &texts) { m_texts = texts; }
    const QStringList &texts() const { return m_texts; }
    int height(int width) const;

    /// The chip at a position, counted from 0; -1 for none.
    int at(const QPoint &position, const QRect &area) const;
    /// \a swatch draws what stands before the text of a chip. \a chosen is -1 for none.
    void paint(QPainter &painter, const QRect &area, int chosen,
               const std::function<void(const QRect &place, int chip)> &swatch) const;

private:
    QList<QRect> places(const QRect &area) const;

    const QWidget &m_owner;
    QStringList m_texts;
};

} // namespace paravue
