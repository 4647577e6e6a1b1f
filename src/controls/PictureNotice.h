#pragma once

#include <QPalette>
#include <QString>

class QPainter;
class QRect;

namespace paravue
{

/// A widget that shows pictures from a source outside, a notice that says why no picture comes or that the
/// shown one is outdated, and a remark on pictures that are not.
class PictureNotice
{
public:
    virtual ~PictureNotice() = default;

    /// Plain text. The next picture removes the notice, and so does an empty text.
    virtual void setNotice(const QString &text) = 0;
    /// Plain text that stands at the lower edge of the picture until it is set to an empty text. It is hidden
    /// while there is a notice or no picture.
    virtual void setRemark(const QString &text) = 0;
    /// Plain text about the shown picture, such as its time. It stands at the upper edge of it while there is
    /// no notice, or below it in editors, and is the description of the widget for screen readers.
    virtual void setCaption(const QString &text) = 0;
};

/// Dims what was painted in \a picture.
void dimPicture(QPainter &painter, const QRect &picture, const QColor &background);
/// Paints \a text in the middle of \a picture, on a background with the opacity \a coverage. A text that does
/// not fit gets a smaller font.
void paintNotice(QPainter &painter, const QRect &picture, const QString &text, const QColor &background,
                 const QColor &foreground, float coverage = 1);
/// Paints \a text at the upper edge of \a picture.
void paintCaption(QPainter &painter, const QRect &picture, const QString &text, const QColor &background,
                  const QColor &foreground);
/// Paints \a text at the lower edge of \a picture.
void paintRemark(QPainter &painter, const QRect &picture, const QString &text, const QColor &background,
                 const QColor &foreground);

} // namespace paravue
