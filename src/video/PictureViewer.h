#pragma once

class QPixmap;
class QSize;

namespace paravue
{

/// Chooses which pictures of a VideoHVX3Reciver are shown, so that the others are neither converted nor
/// copied.
class PictureViewer
{
public:
    virtual ~PictureViewer() = default;

    /// Asked about each decoded picture. \a isInTurn: by the count of all pictures it is to be shown, so that
    /// the receiver emits pixmapReady() for it if it is wanted.
    virtual bool wantsPicture(bool isInTurn) = 0;
    /// Asked about each frame before it is decoded. While false the pictures are not decoded, and none is
    /// shown; afterwards the present one is.
    virtual bool isWatching() = 0;
    /// The size in pixels in which the next picture is shown, if the picture itself is not needed: then it is
    /// scaled while it is converted, which takes a fifth of the time. Empty when it is needed.
    virtual QSize scaledSize() = 0;
    /// Called with each picture that is wanted.
    virtual void showPicture(const QPixmap &pixmap) = 0;
    virtual void showScaled(const QPixmap &pixmap) = 0;
};

} // namespace paravue
