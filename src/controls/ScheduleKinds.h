#pragma once

#include <QIcon>
#include <QList>
#include <QPalette>
#include <QString>

class QPainter;
class QRectF;

namespace paravue
{

/// Something that can be planned for an hour.
struct ScheduleKind {
    char32_t value = 0; ///< the character that stands for it in a stored plan
    QString name;
    bool operator==(const ScheduleKind &) const = default;
};

/// The first means that nothing is planned. The number of a kind, its place in the list, is its key on the
/// keyboard and its mark on the screen, which makes it recognisable without colour vision.
using ScheduleKinds = QList<ScheduleKind>;

/// How many kinds have a colour of their own.
constexpr qsizetype MaxScheduleKinds = 8;
/// The number of an entry that no kind has.
constexpr int UnknownKind = -1;

/// Nothing, continuously, on motion and on alarm, stored as 0 to 3.
ScheduleKinds usualScheduleKinds();
int kindNumber(const ScheduleKinds &kinds, char32_t value);

/// The background of this kind.
QColor kindColor(int number, const QPalette &palette, QPalette::ColorGroup group);
/// Paints it, with lines for an unknown kind. Marks are readable on it in readableTextOn(kindColor()).
void paintKind(QPainter &painter, const QRectF &rect, int number, const QPalette &palette,
               QPalette::ColorGroup group);
/// A sample of the kind for a legend.
QIcon kindIcon(int number, const QPalette &palette);

} // namespace paravue
