#pragma once

#include <QColor>
#include <QPalette>

class QPainter;
class QRect;
class QRectF;
class QStyleOption;
class QStyleOptionTab;

/// The parts of controls as they look in the windows of this library: flat, with edges that are visible on
/// every ground. All take their colours from the palette of the option.
namespace paravue
{

constexpr int FocusRingWidth = 2;

/// Of fields, buttons and lists; paler when the control is disabled.
QColor edgeColor(const QStyleOption &option);

/// A rectangle with an edge.
void paintField(QPainter &painter, const QStyleOption &option, QPalette::ColorRole ground);

/// The outline of a field with a wrong text, over its edge.
void paintProblem(QPainter &painter, const QStyleOption &option);

enum class ArrowDirection { Up, Down };
void paintArrow(QPainter &painter, const QRect &rect, const QColor &color, ArrowDirection direction);

/// The box of a check box. One that is only to be read is a tick, or a dash, without a box.
void paintCheckBox(QPainter &painter, const QStyleOption &option, bool isToRead);

/// The flat ground of a push button in the state of \a option, with the given colour.
void paintButtonGround(QPainter &painter, const QStyleOption &option, const QColor &color,
                       const QColor &edge);

/// The edge of a page of tabs, and a tab without its text. The current tab is a part of its page, with a mark
/// along its outer side; \a overlap is how far tabs reach into the edge of the page.
void paintPane(QPainter &painter, const QStyleOption &option);
void paintTab(QPainter &painter, const QStyleOptionTab &tab, int overlap);

/// Shows the keyboard focus, within \a rect.
void paintRing(QPainter &painter, const QPalette &palette, const QRectF &rect);

} // namespace paravue
