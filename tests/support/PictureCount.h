#pragma once

#include "video/VideoHVX3Reciver.h"

#include <QDomElement>
#include <QImage>
#include <QSignalSpy>

namespace paravue::test
{

/// Makes the next picture of the process the first one of the eight of which the latter four are shown.
inline void startCountingPictures()
{
    VideoHVX3Reciver receiver(nullptr, QDomElement());
    QSignalSpy shown(&receiver, &VideoHVX3Reciver::pixmapReady);
    const auto isShown = [&] {
        shown.clear();
        receiver.imageReady(QImage(1, 1, QImage::Format_RGB32));
        return !shown.isEmpty();
    };
    while (!isShown()) {
    }
    while (isShown()) {
    }
}

} // namespace paravue::test
