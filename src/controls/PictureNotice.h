#pragma once

#include <QPalette>
#include <QString>

class QPainter;
class QRect;

namespace paravue
{

/// A widget that shows pictures from outside and can say why none comes, or that the one it shows is not the
/// present one any more.
class PictureNotice
{
public:
    virtual ~PictureNotice() = default;

    /// In plain text. The next picture takes the notice away, and so does an empty text.
    virtual void setNotice(const QString &text) = 0;
};

/// Dims what was painted in \a picture.
void dimPicture(QPainter &painter, const QRect &picture, const QColor &background);
/// Paints \a text in the middle of \a picture, on a ground that lets some of what is under it through when
/// \a coverage is less than 1. A text that does not fit is written smaller.
void paintNotice(QPainter &painter, const QRect &picture, const QString &text, const QColor &background,
                 const QColor &foreground, float coverage = 1);

} // namespace paravue
