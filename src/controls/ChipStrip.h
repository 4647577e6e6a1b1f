#pragma once

#include <QList>
#include <QRect>
#include <QStringList>

#include <functional>

class QPainter;
class QWidget;

namespace paravue
{

/// A row of small labelled swatches that wraps into further lines: a legend, entries of which may be chosen.
/// A note without a swatch may follow them. It is not a widget; its
/// owner provides room, font, palette and layout direction.
class ChipStrip
{
public:
    explicit ChipStrip(const QWidget &owner) : m_owner(owner) {}

    void setTexts(const QStringList &texts) { m_texts = texts; }
    const QStringList &texts() const { return m_texts; }
    /// Returns true when the strip has another height then, if it is \a width wide.
    bool setNote(const QString &note, int width);
    int height(int width) const;

    /// The chip at a position, counted from 0; -1 for none.
    int at(const QPoint &position, const QRect &area) const;
    /// \a swatch draws the sample before the text of a chip.
    void paint(QPainter &painter, const QRect &area, const QList<int> &chosen,
               const std::function<void(const QRect &place, int chip)> &swatch) const;

private:
    /// Of the chips, and behind them that of the note if there is one.
    QList<QRect> places(const QRect &area) const;

    const QWidget &m_owner;
    QStringList m_texts;
    QString m_note;
};

} // namespace paravue
