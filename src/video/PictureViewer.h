#pragma once

class QPixmap;

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
    /// Called with each picture that is wanted out of its turn.
    virtual void showPicture(const QPixmap &pixmap) = 0;
};

} // namespace paravue
